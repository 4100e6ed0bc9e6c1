"""The single faults that scripts/mutate plants: where in a text, and what stands there then."""
import re

# Two-sided: each is turned into the others of its line. Blanks tell an operator from a
# template's bracket, a reference or a sign.
OPERATORS = [
    (" < ", [" <= ", " >= "]), (" <= ", [" < ", " > "]), (" > ", [" >= ", " <= "]), (" >= ", [" > ", " < "]),
    (" == ", [" != "]), (" != ", [" == "]), (" && ", [" || "]), (" || ", [" && "]),
    (" + ", [" - "]), (" - ", [" + "]), (" * ", [" / "]), (" / ", [" * "]), (" % ", [" * "]),
    (" += ", [" -= "]), (" -= ", [" += "]), ("++", ["--"]), ("--", ["++"]),
    (" & ", [" | "]), (" | ", [" & "]), (" |= ", [" &= "]), (" &= ", [" |= "]), (" << ", [" >> "]), (" >> ", [" << "]),
]
WORDS = {"true": "false", "false": "true"}
# What a text in quotes is not changed in: escapes and conversions, whose letters the compiler looks at.
KEPT_IN_TEXT = re.compile(r"\\(?:x[0-9a-fA-F]+|[0-7]{1,3}|.)|%[-+ #0-9.*]*(?:hh|h|ll|l|z|j|t)?[a-zA-Z%]")
NO_CODE = re.compile(r"^\s*(?:#|using |static_assert|namespace |extern \"|struct |enum |class |template)")
STATEMENT = re.compile(r"^\s+(?!return\b|else\b|case\b|if\b|for\b|while\b|do\b|switch\b|delete\b|goto\b)"
                       r"[\w:.\[\]>*()-]*(?:\(.*\)|(?: [-+|&*/]?= .*)|\+\+|--);$|^\s+(?:break|continue|return);$")
CONDITION = re.compile(r"\b(if|while) \(")


def masked(text):
    """The text with comments and the insides of quotes blanked; and the quoted stretches."""
    shown, quotes, i = list(text), [], 0
    while i < len(text):
        if text.startswith("//", i) or text.startswith("/*", i):
            end = text.find("\n", i) if text[i + 1] == "/" else text.find("*/", i) + 2
            for j in range(i, end):
                shown[j] = shown[j] if text[j] == "\n" else " "
            i = end
        elif text[i] == '"' or (text[i] == "'" and not (i and text[i - 1].isalnum())):
            end = i + 1
            while text[end] != text[i]:
                end += 2 if text[end] == "\\" else 1
            quotes.append((i + 1, end))
            for j in range(i + 1, end):
                shown[j] = "\0"
            i = end + 1
        else:
            i += 1
    return "".join(shown), quotes


def closing(code, start):
    """Where the bracket that opens at start closes."""
    depth = 0
    for i in range(start, len(code)):
        depth += (code[i] == "(") - (code[i] == ")")
        if depth == 0:
            return i
    return -1


def other_letter(letter):
    return "a" if letter == "z" else "A" if letter == "Z" else "0" if letter == "9" else chr(ord(letter) + 1)


def faults_in_quotes(text, quotes, random):
    """One letter or sign of each quoted stretch."""
    for begin, end in quotes:
        kept = {i for found in KEPT_IN_TEXT.finditer(text, begin, end) for i in range(found.start(), found.end())}
        places = [i for i in range(begin, end) if i not in kept]
        if places:
            i = random.choice(places)
            yield i, i + 1, other_letter(text[i]) if text[i].isalnum() and text[i].isascii() else "x"


def faults_in_line(code, start, end, begins_statement):
    """Those that need no more than a line of code."""
    line = code[start:end]
    for operator, others in OPERATORS:
        for found in re.finditer(re.escape(operator), line):
            for other in others:
                yield start + found.start(), start + found.end(), other
    # The generous size of a bounded text, Text<64>, is left alone.
    for found in re.finditer(r"(?<![\w.<])(0[xX][0-9a-fA-F]+|\d+)(?=[uUlL]*\b)(?!\.)", line):
        number = found.group()
        value = int(number, 8 if re.fullmatch(r"0[0-7]+", number) else 0)
        for moved in {value + 1, max(value - 1, 0)} - {value}:
            written = hex(moved) if number[:2].lower() == "0x" else "0%o" % moved if re.match("0.", number) else str(moved)
            yield start + found.start(), start + found.end(), written
    for found in re.finditer(r"\b(true|false)\b", line):
        yield start + found.start(), start + found.end(), WORDS[found.group()]
    for found in re.finditer(r"!(?=[\w(])", line):
        yield start + found.start(), start + found.end(), ""
    for found in CONDITION.finditer(line):
        last = closing(code, start + found.end() - 1)
        if last > 0:
            inside = code[start + found.end():last]
            if ";" not in inside and not re.match(r"(?:const )?(?:struct )?[\w:]+[*&]? [*&]?\w+ = |constexpr", inside):
                yield start + found.end(), last, None
    if begins_statement and STATEMENT.match(line.replace("\0", "x")):
        yield start + len(line) - len(line.lstrip()), end, ";"


def faults_of(text, random):
    """All faults of a source text, as (begin, end, what stands there then)."""
    code, quotes = masked(text)
    found, start, before = [], 0, ";"
    no_code = set()
    for line in code.split("\n"):
        end = start + len(line)
        if NO_CODE.match(line):
            no_code.update(range(start, end))
        elif line.strip():
            found += faults_in_line(code, start, end, before[-1] in ";{}):")
        before = line.strip() or before
        start = end + 1
    found += faults_in_quotes(text, [quote for quote in quotes if quote[0] not in no_code], random)
    return [(a, b, "!(" + text[a:b] + ")" if new is None else new) for a, b, new in found]
