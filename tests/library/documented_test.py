#!/usr/bin/env python3
"""Every public name of the installed headers has a comment that says what it is for.

Names are classes, functions, enumerations and constants, of a namespace or public in a class. A
comment that ends in a colon is that of all lines up to the next empty one. Some names need none:
constructors, destructors and operators; what overrides; the reader `x() const` of a field `x_`; `xIs`
and `xDel` beside `x`; and a name that the header gives to several things that are one to a reader, such
as overloads and the twins of the two families, once it has said what that is."""

import re
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FOLDERS = ("platform/include", "rova/include")
# What each value or collection has means the same in all of them.
COMMON = {"hash", "stringValue", "writeText", "begin", "end", "empty", "size", "reserve"}

NESTED = r"(?:[^()]|\((?:[^()]|\((?:[^()]|\([^()]*\))*\))*\))*"
# In their order, since a comment may have quotes and a directive comments.
NO_CODE = re.compile(
    r'R"\(.*?\)"|"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])\'(?:\\.|[^\'\\\n])+\'|//[^\n]*|/\*.*?\*/'
    r"|^[ ]*\#(?:[^\n\\]|\\[^\n]|\\\n)*", re.MULTILINE | re.DOTALL)
ATTRIBUTES = re.compile(rf"\bLUMO_(?!EXPORT)\w+(?:\s*\({NESTED}\))?")

NAMESPACE = re.compile(r"(?:inline )?namespace\b ?([\w:]*)$|extern \"\"( ?)$")
ENUM = re.compile(r"enum (?:class |struct )?(\w+)")
CLASS = re.compile(r"(class|struct|union) (?:\w+_EXPORT )?([\w:]*\w)(?: final)?(?:<.*>)?(?: ?:[^:].*)?$")
BODY = re.compile(r"(?:\)|\bconst|\bnoexcept|\boverride|\bfinal|>|\brequires .*|-> ?[\w:<>*& ]+)$")
FUNCTION = re.compile(r"(\boperator\b.*?|~?\b(?!(?:void|int|bool|noexcept|requires|decltype|alignas|explicit)\b)"
                      r"\w+) ?\((?!\*)")
CONSTANT = re.compile(r"\bconstexpr\b[^=]*?(\w+) ?(?:\[.*?\])? ?(?:=|$)")


def blanked(match):
    """As many lines of nothing; what was a text is still one."""
    return ('""' if match[0][0] in "R\"'" else "") + "\n" * match[0].count("\n")


def untemplated(head):
    """A declaration without `template <...> requires ...` ahead of it."""
    while head.startswith("template"):
        depth = 0
        for at in range(head.index("<"), len(head)):
            depth += {"<": 1, ">": -1}.get(head[at], 0) if head[at - 1:at + 1] != "->" else 0
            if depth == 0:
                break
        head = head[at + 1:].strip()
    return re.sub(rf"^requires ?(?:\({NESTED}\)|[\w:]+(?:<[^<>]*>)?(?:::\w+)?) ", "", head)


class Reader:
    """Walks the declarations of a header, and calls `found` with the head and the lines of each."""

    def __init__(self, text, found):
        self.text = ATTRIBUTES.sub(blanked, NO_CODE.sub(blanked, text))
        self.found = found
        self.scopes = []  # (the name, whether its members are public now)
        self.at = 0

    def line(self, at):
        return self.text.count("\n", 0, at) + 1

    def skip(self, opening, closing):
        """Behind the match of a bracket that stands here."""
        depth = 0
        while self.at < len(self.text):
            depth += {opening: 1, closing: -1}.get(self.text[self.at], 0)
            self.at += 1
            if depth == 0:
                return

    def declared(self, start):
        raw = self.text[start:self.at]
        begin = start + len(raw) - len(raw.lstrip())
        head = untemplated(re.sub(r"\[\[.*?\]\] ?", "", re.sub(r"\s+", " ", raw).strip()))
        return head, (self.line(begin), self.line(self.at))

    def tell(self, head, lines):
        if head and all(public for _, public in self.scopes):
            self.found([name for name, _ in self.scopes if name], head, lines)

    def read(self):
        start = 0
        while self.at < len(self.text):
            mark = self.text[self.at]
            ended = mark in ";}" or mark == ":" and self.access(start)
            if mark == "(":
                self.skip("(", ")")
            elif mark == "{":
                ended = self.open(*self.declared(start))
            else:
                if mark in ";}":
                    self.tell(*self.declared(start))
                if mark == "}":
                    self.scopes.pop()
                self.at += 1
            if ended:
                start = self.at

    def access(self, start):
        """Whether this is the colon of `public:` and its like."""
        word = self.text[start:self.at].strip()
        if word not in ("public", "private", "protected"):
            return False
        self.scopes[-1] = (self.scopes[-1][0], word == "public")
        return True

    def open(self, head, lines):
        """Goes into a scope, or past what stands in braces; whether a declaration ends there."""
        namespace, kind = NAMESPACE.match(head), CLASS.match(head)
        if namespace or kind:
            if kind:
                self.tell(head + " {", lines)
            # What specialises another's template is known by that.
            self.scopes.append((kind[2], kind[1] != "class" and "::" not in kind[2]) if kind else
                               (namespace[1] or "", namespace[1] not in ("", "detail")))
            self.at += 1
            return True
        fields = re.search(r"\) ?:(?!:)", head)  # which a constructor sets ahead of its body
        body = FUNCTION.search(head) and (fields and head[-1] in ")}" or not fields and BODY.search(head))
        assert body or not re.search(r"\b(class|struct|namespace)\b(?!.*=)", head) or ENUM.match(head), head
        begin = self.at
        self.skip("{", "}")
        if body:
            self.tell(head + " " + re.sub(r"\s+", " ", self.text[begin:self.at]), lines)
        return bool(body)


def name_of(head, own):
    """The name that a declaration needs a comment for; none if it needs no comment."""
    kind, enum = CLASS.match(head.removesuffix(" {")), ENUM.match(head)
    if kind:
        return kind[2] if head.endswith("{") and "::" not in kind[2] else None
    if enum:
        return enum[1]
    if head.startswith(("using ", "typedef ", "friend ", "static_assert", "extern template ")):
        return None
    head, _, body = head.partition("{")
    function = FUNCTION.search(head.split(" = ")[0])
    if function:
        name = function[1]
        plain = name.lstrip("~") == own or name.startswith("operator") or name in COMMON
        inherited = re.search(r"\boverride\b|= delete", head)
        reader = "() const" in head and re.search(rf"return (?:{name}_|\w+_\.{name}_?(?:\(\))?);", body)
        return None if plain or inherited or reader or f"::{name}" in head else name
    constant = CONSTANT.search(head)
    return constant[1] if constant else None


def commented_lines(text):
    """The lines with a comment of their own, those below one, and those that one with a colon heads."""
    lines = set()
    rows = text.splitlines()
    for at, row in enumerate(rows, 1):
        if re.match(r"\s*//", row):
            end = rows.index("", at) if row.endswith(":") and "" in rows[at:] else at
            lines |= set(range(at + 1, end + 2))
        elif "// " in row or "///<" in row:
            lines.add(at)
    return lines


def bare_names(text):
    """The names of a header that need a comment and have none, with their lines."""
    commented, known, bare = commented_lines(text), set(), {}

    def found(scopes, head, lines):
        name = name_of(head, scopes[-1] if scopes else "")
        if name and commented & set(range(lines[0], lines[1] + 1)):
            known.add(name)
        elif name:
            bare.setdefault(name, (lines[0], "::".join([*scopes, name])))

    Reader(text, found).read()
    mutated = re.compile(r"(\w+?)(?:Is|Del)$")
    return sorted(where for name, where in bare.items() if name not in known and
                  not (mutated.match(name) and re.search(rf"\b{mutated.match(name)[1]}\(", text)))


SAMPLE = """
#define NOT_READ { (
namespace Sample {
/// Is said.
enum class Said { one, two };
enum class Unsaid { one };
class Later;

/// Is said.
template <class T, class U = List<List<T>>>
requires(sizeof(T) > 1) class EXAMPLE_EXPORT Thing : public Base<T> {
 public:
  LUMO_TYPE(Thing, "Sample::Thing {")
  LUMO_CTOR(Field<T>, field)
  Thing(int a) : a_{a}, b_("}") {}
  ~Thing() = default;
  int a() const { return a_; }
  int twice() const { return a_ * 2; }
  void aIs(int a);
  virtual int inherited() override;
  bool operator==(const Thing&) const = default;
  explicit operator bool() const;
  std::function<void (int)> behind(std::vector<int> list = {}) const;
  static constexpr int limit = 3; ///< is said
  static constexpr int table[] = {1, 2};
  int field = 4;

  // Of one kind:
  void first();
  void second() { if (a_) { second(); } }

  void third();

 private:
  void hidden();
  struct Hidden { void more(); };
};
inline constexpr char letter = '{';
void overloaded(int);
/// Is said.
void overloaded(long);
namespace detail { void own(); }
namespace { void own(); }
} // namespace Sample
"""
BARE = ["Unsaid", "Thing::twice", "Thing::behind", "Thing::table", "Thing::third", "letter"]


class DocumentedTest(unittest.TestCase):
    maxDiff = None

    def test_what_is_found_in_a_sample(self):
        names = [name for _, name in bare_names(SAMPLE)]
        self.assertEqual(names, [f"Sample::{name}" for name in BARE])

    def test_every_public_name_has_a_comment(self):
        missing = [f"{path.relative_to(ROOT)}:{line}: {name}"
                   for folder in FOLDERS for path in sorted((ROOT / folder).rglob("*.h"))
                   for line, name in bare_names(path.read_text())]
        self.assertEqual(missing, [], "\n" + "\n".join(missing))


if __name__ == "__main__":
    sys.exit(unittest.main())
