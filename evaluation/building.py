"""Builds what an evaluation or a fit needs: the library and the programs that draw, measure, and count memory."""

import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
FOLDER = ROOT / "build" / "evaluation"  # for all that is made on the way
RELEASE = ROOT / "build" / "release"
DRAWER = "vantrel_draw_scans"
CANDIDATES = "vantrel_measure_candidates"
STEPS = "vantrel_show_steps"
REFINEMENT = "vantrel_refine_truth"
PLAIN = ("g++", "clang++")
LEVELS = ("-O0", "-O3")


def say(*command):
    """Runs a command; shows what it prints only if it fails."""
    done = subprocess.run([str(word) for word in command], cwd=ROOT, capture_output=True, text=True)
    if done.returncode != 0:
        raise SystemExit(f"{' '.join(map(str, command))} failed:\n{done.stdout}{done.stderr}")


def build(*targets):
    say("cmake", "--preset", "release")
    say("cmake", "--build", RELEASE, "--target", *targets)


def library():
    """The release preset's library."""
    build("vantrel")
    return RELEASE / "src" / "libvantrel.so"


def drawer():
    """The program that draws scans."""
    build(DRAWER)
    return RELEASE / "evaluation" / DRAWER


def candidates_program():
    """The program that measures the candidates of drawn scans."""
    build(CANDIDATES)
    return RELEASE / "evaluation" / CANDIDATES


def steps_program():
    """The program that tells what the finder sees, step by step."""
    build(STEPS)
    return RELEASE / "evaluation" / STEPS


def refinement_program():
    """The program that lays true borders onto drawn scans."""
    build(REFINEMENT)
    return RELEASE / "evaluation" / REFINEMENT


def peak_memory():
    """The program that counts the memory of a search."""
    program = FOLDER / "peak_memory"
    source = Path(__file__).with_name("peak_memory.cpp")
    if not program.exists() or program.stat().st_mtime < source.stat().st_mtime:
        say("c++", "-std=c++20", "-O2", "-rdynamic", "-I", ROOT / "include", source, "-o", program, "-ldl")
    return program


def plain_libraries():
    """compiler and level -> the library built so and no other way."""
    libraries = {}
    for compiler in PLAIN:
        for level in LEVELS:
            folder = FOLDER / (compiler + level)
            say("cmake", "-G", "Ninja", "-S", ROOT, "-B", folder, f"-DCMAKE_CXX_COMPILER={compiler}",
                f"-DCMAKE_CXX_FLAGS={level}", "-DCMAKE_BUILD_TYPE=", "-DVANTREL_BUILD_TOOL=OFF",
                "-DVANTREL_BUILD_TESTS=OFF", "-DVANTREL_BUILD_BENCHMARKS=OFF")
            say("cmake", "--build", folder, "--target", "vantrel")
            libraries[f"{compiler} {level}"] = folder / "src" / "libvantrel.so"
    return libraries
