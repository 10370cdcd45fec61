"""What codes are read as: by character sets, beside what iconv makes of them, and by symbol fonts,
by the names that Unicode has. characters.py PROGRAM, which is made of characters_main.cpp."""

import re
import subprocess
import sys
import unicodedata

SETS = {0: "CP1252", 77: "MACINTOSH", 128: "CP932", 129: "CP949", 130: "JOHAB", 134: "CP936",
        136: "CP950", 161: "CP1253", 162: "CP1254", 163: "CP1258", 177: "CP1255", 178: "CP1256",
        186: "CP1257", 204: "CP1251", 222: "CP874", 238: "CP1250", 255: "CP437"}
PAIRED = (128, 129, 130, 134, 136)

# Where the sets of the systems and those of iconv are not the same.
OURS = {77: {b"\xC6": "\u2206", b"\xF0": "\uF8FF"}, 128: {b"\x80": "\uFFFD", b"\xA0": "\xA0"}}

SYMBOLS = """
Symbol 44 GREEK CAPITAL LETTER DELTA
Symbol 6A GREEK PHI SYMBOL
Symbol A5 INFINITY
Symbol B7 BULLET
Symbol D6 SQUARE ROOT
Symbol E5 N-ARY SUMMATION
Symbol F2 INTEGRAL
Symbol FD RIGHT CURLY BRACKET MIDDLE PIECE
Wingdings 22 BLACK SCISSORS
Wingdings 4A WHITE SMILING FACE
Wingdings 6C BLACK CIRCLE
Wingdings 8C DINGBAT NEGATIVE CIRCLED SANS-SERIF DIGIT ONE
Wingdings E0 RIGHTWARDS ARROW
Wingdings FE BALLOT BOX WITH CHECK
Wingdings 2 50 CHECK MARK
Wingdings 2 6A CIRCLED DIGIT ONE
Wingdings 3 70 BLACK UP-POINTING TRIANGLE
Webdings 48 HOUSE BUILDING
Webdings 7E LIGHTNING MOOD
Webdings 80 MENS SYMBOL
Webdings A4 CLIPBOARD
Webdings CF LOCK
Webdings E9 WHEELCHAIR SYMBOL
Webdings FF DOVE OF PEACE
ZapfDingbats 48 BLACK STAR
ZapfDingbats FE OPEN-OUTLINED RIGHTWARDS ARROW
MT Extra 4C MIDLINE HORIZONTAL ELLIPSIS
MT Extra 68 PLANCK CONSTANT OVER TWO PI
"""


def run(command, data=b""):
    return subprocess.run(command, input=data, stdout=subprocess.PIPE, check=False).stdout


def lines(command, codes):
    """What each code becomes; a line feed behind it ends whatever the one before has begun."""
    found = run(command, b"".join(code + b"\n" for code in codes)).decode().split("\n")[:-1]
    assert len(found) == len(codes), command
    return found


def check_singles(program, number, encoding):
    """Controls are what iconv has no characters for, up to 9F and but for halves of pairs."""
    codes = [bytes([byte]) for byte in range(0x80, 0x100)]
    command = ["iconv", "-c", "-f", encoding, "-t", "UTF-8"]
    isAlone = number in PAIRED  # or half a character takes the line feed behind it
    known = [lines(command, [code])[0] for code in codes] if isAlone else lines(command, codes)
    halves = range(0x84 if number == 130 else 0x81, 0xFF) if number in PAIRED else ()
    for code, text, ours in zip(codes, known, lines([program, str(number)], codes)):
        isControl = code[0] < 0xA0 and code[0] not in halves
        expected = text or (chr(code[0]) if isControl else "\uFFFD")
        if ours != OURS.get(number, {}).get(code, expected):
            yield f"{number} {code.hex()}: {ours!r}, not {expected!r}"


def shown(code, text):
    """Makers of systems have put signs, kana and Cyrillic letters where Big5 has none."""
    added = code.decode("big5hkscs", "replace")
    name = unicodedata.name(added, "") if len(added) == 1 else ""
    isAdded = code < b"\xC8\x76" and re.match(
        "HIRAGANA|KATAKANA|CYRILLIC|CIRCLED|PARENTHESIZED|SMALL ROMAN|IDEOGRAPHIC", name)
    return added if isAdded and unicodedata.category(text) == "Co" else text


def check_pairs(program, number, encoding):
    """All that iconv takes for one character; of others, none may be made up, but for those that a
    set leaves to its users."""
    # Where a pair is none, its first byte is left out and the second may be a character: a small
    # letter of Japanese, or the won sign in the place of a backslash.
    seconds = lines([program, str(number)], [bytes([trail]) for trail in range(0x80, 0x100)])
    seconds.append("\u20A9")
    codes = [bytes([lead, trail]) for lead in range(0x81, 0xFF) for trail in range(0x31, 0xFF)
             if trail != 0x7F]
    if number == 129:
        codes.remove(b"\xA2\xE8")  # which iconv takes the line feed behind for a part of
    known = lines(["iconv", "-c", "-f", encoding, "-t", "UTF-8"], codes)
    count = 0
    for code, text, ours in zip(codes, known, lines([program, str(number)], codes)):
        isCharacter = len(text) == 1 and ord(text) >= 0x80 and text not in seconds
        count += isCharacter
        isUsers = len(ours) == 1 and unicodedata.category(ours) == "Co"
        if number == 136 and isCharacter:
            text = shown(code, text)
        if ours != text if isCharacter else not ("\uFFFD" in ours or isUsers or len(ours) == 2):
            yield f"{number} {code.hex()}: {ours!r}, not {text!r}"
    if count < 5000:
        yield f"{number}: no more than {count} pairs are known"


def check_symbols(program):
    for line in SYMBOLS.split("\n")[1:-1]:
        font, code, name = re.fullmatch("(.+?) ([0-9A-F]{2}) (.+)", line).groups()
        known = dict(each.split() for each in run([program, font]).decode().split("\n")[:-1])
        found = unicodedata.name(chr(int(known[code], 16)), known[code])
        if found != name:
            yield f"{font} {code}: {found}, not {name}"


def main(program):
    wrong = []
    for number, encoding in SETS.items():
        wrong += check_singles(program, number, encoding)
        if number in PAIRED:
            wrong += check_pairs(program, number, encoding)
    wrong += check_symbols(program)
    print(*wrong, sep="\n")
    return 1 if wrong else 0


sys.exit(main(sys.argv[1]))
