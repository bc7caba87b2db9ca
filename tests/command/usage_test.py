#!/usr/bin/env python3
"""Command lines that cannot be understood: the message, the caret under the word, and status 2."""

import unittest

from support import CommandTest, rova

QUERY_PARTS = ("vrf, host, longer-prefixes, detail, interface, or a protocol (aggregate bgp "
               "connected dhcp dynamic isis kernel martian ospf ospf3 rip static vcs)")

# The message, the command line, the caret.
WRONG_WORDS = [
    """rova: the command is not complete: expected ip or ipv6
  show
       ^
""",
    """rova: the command is not complete: expected route
  show ip
          ^
""",
    """rova: "s" is short for several words: show or snapshot
  s ip route
  ^
""",
    """rova: "i" is short for several words: ip or ipv6
  show i route
       ^
""",
    """rova: "foo" is not understood: expected route
  show ip foo
          ^
""",
    """rova: "routes" is not understood: expected route
  show ip routes
          ^
""",
    f"""rova: "foo" is not understood: expected an IPv4 address or prefix, {QUERY_PARTS}
  show ip route foo
                ^
""",
    f"""rova: "foo" is not understood: expected an IPv6 address or prefix, {QUERY_PARTS}
  show ipv6 route vrf red foo
                          ^
""",
    """rova: "d" is short for several words: detail, dhcp or dynamic
  show ip route d
                ^
""",
    """rova: "i" is short for several words: interface or isis
  show ip route 10.1.0.0/16 i
                            ^
""",
    """rova: expected the name of a VRF, or all
  show ip route vrf
                    ^
""",
    """rova: expected the name of an interface
  show ip route interface
                          ^
""",
    """rova: longer-prefixes needs a prefix ahead of it, as in 10.0.0.0/8 longer-prefixes
  show ip route longer-prefixes
                                ^
""",
    """rova: this part of the query stands twice
  show ip route 10.1.0.0/16 10.2.0.0/16
                            ^
""",
    """rova: this part of the query stands twice
  show ip route vrf red vrf red
                        ^
""",
    """rova: this part of the query stands twice
  show ip route bgp static
                    ^
""",
    """rova: this part of the query stands twice
  show ip route detail bgp detail
                           ^
""",
    """rova: "10.0.0.1/8" has bits behind its mask: expected 10.0.0.0/8
  show ip route 10.0.0.1/8
                ^
""",
    """rova: "2001:db8::1/32" has bits behind its mask: expected 2001:db8::/32
  show ipv6 route 2001:db8::1/32
                  ^
""",
    """rova: "10.0.0.300" is no IPv4 address or prefix
  show ip route 10.0.0.300
                ^
""",
    """rova: "10.0.0.0/33" is no IPv4 address or prefix
  show ip route 10.0.0.0/33
                ^
""",
    """rova: "10.0.0.0/" is no IPv4 address or prefix
  show ip route 10.0.0.0/
                ^
""",
    """rova: "10.0.0/8" is no IPv4 address or prefix
  show ip route 10.0.0/8
                ^
""",
    """rova: "2001:db8::1" is no IPv4 address or prefix
  show ip route 2001:db8::1
                ^
""",
    """rova: "10.1.0.0/16" is no IPv6 address or prefix
  show ipv6 route 10.1.0.0/16
                  ^
""",
    """rova: "2001:db8::/129" is no IPv6 address or prefix
  show ipv6 route 2001:db8::/129
                  ^
""",
    """rova: "2001:db8:::1" is no IPv6 address or prefix
  show ipv6 route 2001:db8:::1
                  ^
""",
    """rova: host goes with vrf alone: the host route table is shown as a whole
  show ip route host detail
                     ^
""",
    """rova: host goes with vrf alone: the host route table is shown as a whole
  show ip route 10.1.0.0/16 host
                            ^
""",
    """rova: host goes with vrf alone: the host route table is shown as a whole
  show ipv6 route host vrf red 2001:db8::1
                               ^
""",
    """rova: host goes with vrf alone: the host route table is shown as a whole
  show ip route host interface Ethernet1
                     ^
""",
    """rova: host goes with vrf alone: the host route table is shown as a whole
  show ip route bgp vrf all ho
                            ^
""",
    """rova: host goes with vrf alone: the host route table is shown as a whole
  show ip route host longer-prefixes
                     ^
""",
    """rova: this part of the query stands twice
  show ip route host host
                     ^
""",
    # The caret counts characters, not bytes.
    """rova: this part of the query stands twice
  show ip route vrf büro vrf red
                         ^
""",
    """rova: expected the name of an interface
  show ip route vrf büro interface
                                   ^
""",
    """rova: expected the name of a file, or - for standard output
  snapshot save
                ^
""",
    """rova: nothing is expected behind the name of the file
  snapshot save - again
                  ^
""",
]

# The words ahead of the command, what they are told.
WRONG_OPTIONS = [
    (["--nope", "show"], "--nope does not exist"),
    (["-x", "show"], "-x does not exist"),
    (["--form", "json", "show"], "--form does not exist"),
    (["--format", "xml", "show"], '--format takes text or json, found "xml"'),
    (["--format=", "show"], '--format takes text or json, found ""'),
    (["--format"], "--format needs a value"),
    (["--state"], "--state needs a value"),
    (["--timing=1", "show"], "--timing takes no value"),
]


class UsageTest(CommandTest):
    def test_wrong_words(self):
        for message in WRONG_WORDS:
            with self.subTest(message):
                result = rova(*message.splitlines()[1].split())
                self.assert_ends(result, 2, message)
                self.assertEqual(result.stdout, "")

    def test_wrong_options(self):
        for words, message in WRONG_OPTIONS:
            with self.subTest(words):
                expected = f"rova: option {message}\n  rova --help lists the options\n"
                self.assert_ends(rova(*words), 2, expected)

    def test_no_command(self):
        expected = ("rova: the command is not complete: expected show or snapshot\n"
                    "  rova --help shows the commands\n")
        self.assert_ends(rova(), 2, expected)
        self.assert_ends(rova(" "), 2, expected)

    def test_a_wrong_query_is_found_before_the_state_is_read(self):
        self.assertEqual(rova("show", "ip", "route", "foo", state="/nowhere").returncode, 2)


if __name__ == "__main__":
    unittest.main()
