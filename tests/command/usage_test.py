#!/usr/bin/env python3
"""Command lines that cannot be understood: the message, the caret under the word, and status 2."""

import unittest

from support import CommandTest, rova

QUERY_PARTS = ("vrf, host, summary, longer-prefixes, detail, interface, or a protocol (aggregate bgp "
               "connected dhcp dynamic isis kernel martian ospf ospf3 rip static vcs)")

# The message, the command line, the caret.
WRONG_WORDS = [
    """rova: the command is not complete: expected ip, ipv6, nexthop-group, running-config or static
  show
       ^
""",
    """rova: the command is not complete: expected route
  show ip
          ^
""",
    """rova: "s" is short for several words: show, static or snapshot
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
    """rova: host and summary are two displays
  show ip route host vrf red summary
                             ^
""",
    """rova: "s" is short for several words: summary or static
  show ip route s
                ^
""",
    """rova: summary goes with vrf alone: it counts the whole table
  show ip route summary detail
                        ^
""",
    """rova: summary goes with vrf alone: it counts the whole table
  show ip route 10.1.0.0/16 summary
                            ^
""",
    """rova: summary goes with vrf alone: it counts the whole table
  show ipv6 route summary vrf red 2001:db8::1
                                  ^
""",
    """rova: summary goes with vrf alone: it counts the whole table
  show ip route summary interface Ethernet1
                        ^
""",
    """rova: summary goes with vrf alone: it counts the whole table
  show ip route bgp vrf all su
                            ^
""",
    """rova: summary goes with vrf alone: it counts the whole table
  show ip route summary longer-prefixes
                        ^
""",
    """rova: this part of the query stands twice
  show ip route summary summary
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
    """rova: "b" is not understood: expected vrf or summary
  show nexthop-group a b
                       ^
""",
    """rova: the summary is of all nexthop groups; leave the name out
  show nexthop-group summary name vrf
                                  ^
""",
    """rova: "c" is short for several words: check or clear
  c static
  ^
""",
    """rova: "interface" is not understood: expected all or vrf
  show running-config static interface Ethernet1
                             ^
""",
    """rova: all stands twice
  show running-config static all vrf all all
                                         ^
""",
    """rova: expected the name of a VRF, or all
  show running-config static vrf
                                 ^
""",
    """rova: "0" is no tag: expected 1 to 4294967295
  show static tag 0 dynamic
                  ^
""",
    """rova: "4294967296" is no tag: expected 1 to 4294967295
  show static tag 4294967296
                  ^
""",
    """rova: "7x" is no tag: expected 1 to 4294967295
  show static dynamic tag 7x
                          ^
""",
    """rova: expected a tag, 1 to 4294967295
  show static tag
                  ^
""",
    """rova: "all" is not understood: expected dynamic, tag or vrf
  show static all
              ^
""",
    """rova: "10.0.0.1" is no address with a mask length, as in 10.0.0.1/24
  check address 10.0.0.1 interface Ethernet1
                ^
""",
    """rova: the command is not complete: expected interface, replace or secondary
  check address 10.0.0.1/24
                            ^
""",
    """rova: expected the name of an interface
  check address 10.0.0.1/24 secondary interface
                                                ^
""",
    """rova: this is for IPv4 alone: all IPv6 addresses of an interface are of one kind, and each may be entered again
  check address 2001:db8::1/64 interface Ethernet1 replace
                                                   ^
""",
    """rova: "10.0.0.0/8" is no IPv4 or IPv6 address
  check next-hop 10.0.0.0/8
                 ^
""",
    """rova: "red" is not understood: expected vrf
  check next-hop 10.0.0.1 red
                          ^
""",
    """rova: nothing is expected behind the name of the VRF
  check next-hop 10.0.0.1 vrf red blue
                                  ^
""",
    """rova: "65000" is no route distinguisher: expected ASN:N or A.B.C.D:N
  check rd 65000 vrf red
           ^
""",
    """rova: the command is not complete: expected vrf
  check rd 65000:1
                   ^
""",
    """rova: the command is not complete: expected interface
  clear static
               ^
""",
    """rova: nothing is expected behind the name of the interface
  clear static interface Ethernet1 Ethernet2
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
    (["show", "ip", "route", "--nope"], "--nope does not exist"),
    (["show", "ip", "route", "--format"], "--format needs a value"),
    (["--form", "json", "show"], "--form does not exist"),
    (["--format", "xml", "show"], '--format takes text or json, found "xml"'),
    (["--format=", "show"], '--format takes text or json, found ""'),
    (["--format"], "--format needs a value"),
    (["--state"], "--state needs a value"),
    (["--into", "-", "show"], '--into takes the name of a file, found "-"'),
    (["--dry-run=1", "show"], "--dry-run takes no value"),
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
        expected = ("rova: the command is not complete: expected show, check, clear, static, snapshot or types\n"
                    "  rova --help shows the commands\n")
        self.assert_ends(rova(), 2, expected)
        self.assert_ends(rova(" "), 2, expected)

    def test_a_wrong_query_is_found_before_the_state_is_read(self):
        self.assertEqual(rova("show", "ip", "route", "foo", state="/nowhere").returncode, 2)


if __name__ == "__main__":
    unittest.main()
