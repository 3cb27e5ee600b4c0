"""Single-token mutants of C++ source as clang-format lays it out, and the list of those known to be equivalent.

The layout tells operators apart: a binary operator has white space on both sides; a template bracket, a pointer's star
and a sign have not.
"""

import re
from dataclasses import dataclass

COMMENTS_AND_STRINGS = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'', re.S)
PREPROCESSOR = re.compile(r"^[ \t]*#(?:[^\n\\]|\\.|\\\n)*", re.M | re.S)

OPERATORS = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",),
             "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("/",), "&&": ("||",), "||": ("&&",),
             "<<": (">>",), ">>": ("<<",), "&": ("|",), "|": ("&",), "+=": ("-=",), "-=": ("+=",)}
BINARY = re.compile(r"(?<=\s)(?:" + "|".join(re.escape(token) for token in sorted(OPERATORS, key=len, reverse=True)) +
                    r")(?=\s)")
NUMBER = re.compile(r"(?<![\w.])(0x[0-9A-Fa-f]+|\d+(?:\.\d+)?)(?=[uUlLfF]*(?![\w.]))")
TRUTH = re.compile(r"\b(?:true|false)\b")
EXTREME = re.compile(r"(?<=std::)(?:min|max)(?=[(<])")
RETURN = re.compile(r"\breturn\s+([^;]+);")
HEAD = re.compile(r"(?:if|for|while)\s*(?:constexpr\s*)?\(|else\b|(?:case\b[^:?]*|default):(?!:)")
KEYWORDS = ("return", "if", "else", "for", "while", "do", "switch", "case", "default", "break", "continue", "using",
            "typedef", "template", "static_assert", "namespace", "struct", "class", "enum", "public", "private",
            "friend", "static", "const", "constexpr", "inline", "auto", "extern", "explicit")


@dataclass(frozen=True)
class Mutant:
    """A replacement of text[start:end], and its lines before and after, each joined to one without indentation."""

    file: str
    line: int
    start: int
    end: int
    change: str
    replacement: str
    before: str
    after: str

    @property
    def room(self):
        return self.file.split("/")[1]

    @property
    def key(self):
        return self.file, self.before, self.after

    def applied_to(self, text):
        return text[:self.start] + self.replacement + text[self.end:]


def blanked(text):
    """The text with comments, literals and preprocessor lines as spaces, of the same length and lines."""
    def blank(match):
        return re.sub(r"[^\n]", " ", match.group())
    return PREPROCESSOR.sub(blank, COMMENTS_AND_STRINGS.sub(blank, text))


def numbers_near(token):
    """The neighbours of a whole number; of a decimal, those that differ by one in its last digit."""
    if token.startswith("0x"):
        return [hex(int(token, 16) + step) for step in (1, -1) if int(token, 16) + step >= 0]
    digits = len(token.partition(".")[2])
    return [f"{(int(token.replace('.', '')) + step) / 10 ** digits:.{digits}f}" for step in (1, -1)]


def closing(code, opening):
    """Behind the parenthesis that closes the one at `opening`."""
    depth = 0
    for at in range(opening, len(code)):
        depth += {"(": 1, ")": -1}.get(code[at], 0)
        if depth == 0:
            return at + 1
    return len(code)


def without_conditions(code, start, end):
    """Where the statement itself begins behind if (...), for (...), while (...), else and case labels."""
    while True:
        start += len(code[start:end]) - len(code[start:end].lstrip())
        head = HEAD.match(code, start, end)
        if not head:
            return start
        start = closing(code, head.end() - 1) if head.group().endswith("(") else head.end()


def is_effect(statement):
    """Whether a statement is an assignment, a step or a call, and not a declaration or a jump."""
    if not statement or re.match(r"(?:" + "|".join(KEYWORDS) + r")\b", statement):
        return False
    flat = statement
    while True:
        shorter = re.sub(r"\([^()]*\)|\[[^\[\]]*\]|\{[^{}]*\}", "@", flat)
        if shorter == flat:
            break
        flat = shorter
    if re.match(r"(?:\+\+|--)[\w:.>@-]+$|[\w:.>@-]+(?:\+\+|--)$", flat):
        return True
    assigned = re.match(r"(\*?[\w:.>@-]+)\s(?:[-+*/%&|^]|<<|>>)?=\s", flat)
    if assigned:
        return True
    return re.fullmatch(r"[\w:.>-]+(?:@[\w:.>-]*)*@", flat) is not None


def statements(code):
    """(start, end) of what ends with a semicolon outside parentheses; the end is the semicolon's place."""
    start = depth = 0
    for at, char in enumerate(code):
        depth += {"(": 1, ")": -1, "[": 1, "]": -1}.get(char, 0)
        if char == ";" and depth == 0:
            yield start, at
        if char in "{};" and depth <= 0:
            start = at + 1


def changes(code):
    """(start, end, replacement, description) of every mutant."""
    for match in BINARY.finditer(code):
        for other in OPERATORS[match.group()]:
            yield match.start(), match.end(), other, f"{match.group()} to {other}"
    for match in NUMBER.finditer(code):
        for other in numbers_near(match.group(1)):
            yield match.start(1), match.end(1), other, f"{match.group(1)} to {other}"
    for match in TRUTH.finditer(code):
        other = "false" if match.group() == "true" else "true"
        yield match.start(), match.end(), other, f"{match.group()} to {other}"
    for match in EXTREME.finditer(code):
        other = "max" if match.group() == "min" else "min"
        yield match.start(), match.end(), other, f"{match.group()} to {other}"
    for match in RETURN.finditer(code):
        if match.group(1).strip() not in ("{}", "0", "false", "true", "nullptr", "*this"):
            yield match.start(1), match.end(1), "{}", "return {}"
    for start, end in statements(code):
        start = without_conditions(code, start, end)
        if is_effect(code[start:end].strip()):
            yield start, end, "", "statement deleted"


def joined(lines):
    return " ".join(" ".join(line.split()) for line in lines if line.strip())


def mutants_of(file, text):
    """All mutants of a file in the order of their places."""
    found = []
    for start, end, replacement, change in changes(blanked(text)):
        first, last = text.rfind("\n", 0, start) + 1, text.find("\n", end)
        kept = replacement + "\n" * text[start:end].count("\n")  # lines keep their numbers
        before, after = text[first:last], text[first:start] + kept + text[end:last]
        found.append(Mutant(file, text.count("\n", 0, start) + 1, start, end, change, kept, joined(before.split("\n")),
                            joined(after.split("\n"))))
    return sorted(found, key=lambda mutant: (mutant.start, mutant.end, mutant.replacement))


def read_equivalents(text):
    """(file, before, after) -> reason, from blocks of four lines: the file, "- before", "+ after", "= reason"."""
    reasons = {}
    for block in re.split(r"\n\s*\n", text.strip()):
        lines = [line for line in block.split("\n") if line and not line.startswith("#")]
        if not lines:
            continue
        if len(lines) < 4 or [line[:2] for line in lines[1:4]] != ["- ", "+ ", "= "]:
            raise ValueError("a block is a file, '- before', '+ after' and '= reason', not:\n" + block)
        reasons[lines[0].strip(), lines[1][2:], lines[2][2:]] = " ".join(line.lstrip("= ") for line in lines[3:])
    return reasons
