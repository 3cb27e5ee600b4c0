"""Real scans among the samples: not drawn, but on the record with the borders that stand out on them."""

REAL_SCANS = {
    "real/receipt-three-sides.jpg": {
        "says": "a receipt on dark glass; its right border lies at the edge of the glass",
        "size": [1060, 2100], "dpi": 300, "visible": ["top", "bottom", "left"]},
    "real/receipt-two-sides.jpg": {
        "says": "a receipt on black glass; its top and right borders lie at the edge of the glass",
        "size": [1000, 1140], "dpi": 300, "visible": ["bottom", "left"]},
}
