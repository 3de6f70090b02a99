#!/usr/bin/env python3
"""Writes knobs.mid beside itself: four seconds of a hand on a controller keyboard, as a standard MIDI file.

Channel 1: a key is held from 0.5 s to 3.5 s while volume (controller 7) goes down and comes back, brightness (74) opens
and closes, pan (10) goes round from the middle, and the bend wheel is pushed up in the second half and let go.
"""

import pathlib
import struct

PULSES_PER_QUARTER = 480
MICROSECONDS_PER_QUARTER = 500_000
PULSES_PER_SECOND = PULSES_PER_QUARTER * 1_000_000 // MICROSECONDS_PER_QUARTER
LENGTH = 4 * PULSES_PER_SECOND
STEP = PULSES_PER_SECOND // 40


def along(points, pulse):
    """The value at `pulse` on the straight lines between (pulse, value) points, whole numbers throughout."""
    for (start, low), (end, high) in zip(points, points[1:]):
        if pulse <= end:
            return low + (high - low) * (pulse - start) // (end - start)
    return points[-1][1]


def sweep(points, message):
    """Messages every 25 ms, where the value has changed."""
    last = None
    for pulse in range(0, LENGTH + 1, STEP):
        value = along(points, pulse)
        if value != last:
            yield pulse, message(value)
        last = value


def controller(number):
    return lambda value: bytes((0xB0, number, value))


def bend(value):
    return bytes((0xE0, value & 0x7F, value >> 7))


def variable_length(number):
    encoded = [number & 0x7F]
    while number := number >> 7:
        encoded.insert(0, number & 0x7F | 0x80)
    return bytes(encoded)


def track(events):
    body = b""
    at = 0
    for pulse, message in sorted(events, key=lambda event: event[0]):
        body += variable_length(pulse - at) + message
        at = pulse
    body += variable_length(LENGTH - at) + b"\xFF\x2F\x00"
    return b"MTrk" + struct.pack(">I", len(body)) + body


def named(name):
    return 0, b"\xFF\x03" + variable_length(len(name)) + name


half = LENGTH // 2
second = PULSES_PER_SECOND
tempo = [named(b"Knobs"), (0, b"\xFF\x51\x03" + MICROSECONDS_PER_QUARTER.to_bytes(3, "big"))]
knobs = [
    named(b"Controllers"),
    *sweep([(0, 127), (half, 64), (LENGTH, 127)], controller(7)),
    *sweep([(0, 0), (3 * second, 127), (LENGTH, 0)], controller(74)),
    *sweep([(0, 64), (second, 127), (3 * second, 0), (LENGTH, 64)], controller(10)),
]
keys = [
    named(b"Keys"),
    (second // 2, bytes((0x90, 60, 100))),
    (LENGTH - second // 2, bytes((0x80, 60, 0))),
    *sweep([(0, 8192), (half, 8192), (3 * second, 16383), (LENGTH, 8192)], bend),
]
header = b"MThd" + struct.pack(">IHHH", 6, 1, 3, PULSES_PER_QUARTER)
file = header + b"".join(track(events) for events in (tempo, knobs, keys))
pathlib.Path(__file__).with_name("knobs.mid").write_bytes(file)
