#!/usr/bin/env python3
"""Prints code_points.inc: what CP866 and CP1251 make of every byte from 0x80, according to Python's codecs.

    ./make_code_points.py > code_points.inc
"""


def entry(byte, code_page):
    try:
        character = bytes([byte]).decode(code_page)
    except UnicodeDecodeError:
        return 'kUndefined, ""'
    utf8 = "".join(f"\\x{b:02X}" for b in character.encode("utf-8"))
    return f'0x{ord(character):04X}, "{utf8}"'


print("// Made by make_code_points.py: byte, then code point and UTF-8 bytes in CP866 and in CP1251.")
for byte in range(0x80, 0x100):
    print(f"{{0x{byte:02X}, {entry(byte, 'cp866')}, {entry(byte, 'cp1251')}}},")
