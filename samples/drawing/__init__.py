"""Draws scans of business cards whose corners are known exactly."""
