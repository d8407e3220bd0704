#!/usr/bin/env python3
"""Writes sounds/beep.wav: a soft 120 ms bell, 44.1 kHz, 16 bit, mono.

Needs Python 3 alone. The same script always writes the same bytes.
"""

import math
import struct
import wave
from pathlib import Path

RATE = 44100
LENGTH = 0.12  # seconds
ATTACK = 0.006
RELEASE = 0.03
# frequency in Hz, share of the loudness, how fast it dies away (per second)
PARTIALS = ((880.0, 0.30, 18.0), (1760.0, 0.07, 34.0), (2637.0, 0.025, 60.0))


def raised_cosine(x: float) -> float:
    return 0.5 - 0.5 * math.cos(math.pi * min(max(x, 0.0), 1.0))


def sample(t: float) -> float:
    tone = sum(share * math.exp(-decay * t) * math.sin(2 * math.pi * hertz * t) for hertz, share, decay in PARTIALS)
    # Both ends are rounded off, so that no click is heard.
    return tone * raised_cosine(t / ATTACK) * raised_cosine((LENGTH - t) / RELEASE)


frames = b"".join(struct.pack("<h", round(32767 * sample(n / RATE))) for n in range(round(RATE * LENGTH)))
target = Path(__file__).parent / "sounds" / "beep.wav"
target.parent.mkdir(exist_ok=True)
with wave.open(str(target), "wb") as out:
    out.setnchannels(1)
    out.setsampwidth(2)
    out.setframerate(RATE)
    out.writeframes(frames)
