#!/usr/bin/env python3
"""Compresses RTF as mail stores keep it (MS-OXRTFCP): make_rtfz.py IN.rtf OUT.rtfz"""
import struct
import sys
import zlib

SEED = (rb'{\rtf1\ansi\mac\deff0\deftab720{\fonttbl;}{\f0\fnil \froman \fswiss \fmodern \fscript '
        rb'\fdecor MS Sans SerifSymbolArialTimes New RomanCourier{\colortbl\red0\green0\blue0'
        b'\r\n' rb'\par \pard\plain\f0\fs20\b\i\u\tab\tx')


def longest_match(text, at):
    """The longest earlier run (2 to 17 bytes, not longer than what is already written)."""
    best_length, best_at = 0, 0
    window = max(0, at - 4078)
    for length in range(min(17, len(text) - at), 1, -1):
        found = text.rfind(text[at:at + length], window, at)
        if found >= 0:
            best_length, best_at = length, found
            break
    return best_length, best_at


def compress(rtf):
    text = SEED + rtf
    at = len(SEED)
    stream = bytearray()
    done = False
    while not done:
        control, tokens = 0, bytearray()
        for bit in range(8):
            if at >= len(text):
                tokens += struct.pack('>H', (at % 4096) << 4)
                control |= 1 << bit
                done = True
                break
            length, found = longest_match(text, at)
            if length:
                tokens += struct.pack('>H', (found % 4096) << 4 | length - 2)
                control |= 1 << bit
                at += length
            else:
                tokens.append(text[at])
                at += 1
        stream.append(control)
        stream += tokens
    crc = zlib.crc32(bytes(stream), 0xFFFFFFFF) ^ 0xFFFFFFFF
    return struct.pack('<II4sI', len(stream) + 12, len(rtf), b'LZFu', crc) + bytes(stream)


if __name__ == '__main__':
    with open(sys.argv[1], 'rb') as source, open(sys.argv[2], 'wb') as target:
        target.write(compress(source.read()))
