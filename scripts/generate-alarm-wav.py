#!/usr/bin/env python3
"""Writes resources/install/Alarm.wav, the sound of Orvalen's alarm.

A soft two-note chime (E5 then C5, like a door bell) with bell-like
overtones, 22050 Hz, 16-bit mono PCM, about 1.6 seconds: short enough for a
reminder, and a format that Windows 95 plays without any codec.

    python3 scripts/generate-alarm-wav.py [output-file]
"""

import math
import os
import struct
import sys
import wave

RATE = 22050
LENGTH = 1.6  # seconds

# Partials of a small bell: (frequency ratio, amplitude, decay per second).
PARTIALS = [(1.0, 1.0, 3.0), (2.0, 0.45, 5.0), (3.0, 0.22, 7.5), (4.16, 0.10, 10.0), (5.43, 0.05, 14.0)]

NOTES = [  # (start in seconds, fundamental in Hz, loudness)
    (0.00, 659.25, 1.0),   # E5
    (0.42, 523.25, 0.95),  # C5
]


def sample(t):
    value = 0.0
    for start, freq, loud in NOTES:
        u = t - start
        if u < 0:
            continue
        attack = min(1.0, u / 0.004)  # 4 ms rise: no click
        for ratio, amp, decay in PARTIALS:
            value += loud * attack * amp * math.exp(-decay * u) * math.sin(2 * math.pi * freq * ratio * u)
    return value


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(root, "resources", "install", "Alarm.wav")
    os.makedirs(os.path.dirname(out), exist_ok=True)

    count = int(RATE * LENGTH)
    raw = [sample(i / RATE) for i in range(count)]
    fade = int(RATE * 0.15)
    for i in range(fade):  # let the tail die away to silence
        raw[count - fade + i] *= 1.0 - i / fade
    peak = max(abs(v) for v in raw) or 1.0
    scale = 0.7 * 32767 / peak  # about -3 dB below full scale
    frames = b"".join(struct.pack("<h", int(round(v * scale))) for v in raw)

    with wave.open(out, "wb") as w:
        w.setnchannels(1)
        w.setsampwidth(2)
        w.setframerate(RATE)
        w.writeframes(frames)
    print("wrote", out, "(%.2f s)" % (count / RATE))


if __name__ == "__main__":
    main()
