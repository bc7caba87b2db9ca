#!/usr/bin/env python3
"""Command lines that cannot be understood: the message, the caret under the word, and status 2."""

import unittest

from support import CommandTest, rova

PROTOCOLS = "aggregate bgp connected dhcp dynamic isis kernel martian ospf ospf3 rip static vcs"
PROTOCOLS6 = PROTOCOLS.replace(" ospf ", " ").replace(" vcs", "")

# What stands behind where, with a ^ as below.
FIELDS = ("prefix length type protocol preference metric nexthop interface vias weight label tunnel endpoint "
          "policy color group vni vtep source-vrf leaked hardware kernel connected backup")
WRONG_EXPRESSIONS = [
    (f'"foo" is not understood: expected not, ( or a field ({FIELDS})',
     ["^foo = 1", "vias = 1 or (not ^foo)", "vias >= 2 and ^foo"]),
    (f'"and" is not understood: expected not, ( or a field ({FIELDS})', ["^and vias = 1"]),
    (f"the expression is not complete: expected not, ( or a field ({FIELDS})",
     ["vias = 1 and ^", "not ^", "vias = 1 or ( ^"]),
    ("the expression is not complete: expected =, !=, <, <=, >, >= or in", ["vias ^"]),
    ('">" does not go with prefix: expected =, != or in', ["prefix ^> 10.0.0.0/8"]),
    ('"~" does not go with nexthop: expected =, != or in', ["nexthop^~192.*"]),
    ('"<" does not go with interface: expected =, !=, in or ~', ["interface ^< 7"]),
    ("hardware stands by itself, or behind not: it has no values", ["not hardware ^= 1"]),
    ('"x" is no value of vias: expected a number, 0 to 4294967295', ["vias=^x", "not(vias >= ^x)"]),
    ('"4294967296" is no value of metric: expected a number, 0 to 4294967295', ["metric = ^4294967296"]),
    ('"8..x" is no value of length: expected a number or a range, as in 10..20', ["length in {7, ^8..x}"]),
    ('"20..10" has its ends the wrong way round: expected 10..20', ["length in ^20..10"]),
    ('"10.0.0.1/8" has bits behind its mask: expected 10.0.0.0/8',
     ["prefix = ^10.0.0.1/8", "nexthop in {::/0, ^10.0.0.1/8}"]),
    ('"10.0.0.0" is no value of prefix: expected a prefix, as in 10.0.0.0/8', ["prefix in ^10.0.0.0"]),
    ('"10.0.0.0/8" is no value of vtep: expected an address, as in 192.0.2.1; a prefix stands behind in',
     ["vtep = ^10.0.0.0/8"]),
    ("the expression is not complete: expected an address or a prefix, as in 192.0.2.0/24",
     ["nexthop in {10.0.0.0/8, ^"]),
    ('"{" is no value of group: expected a name', ["group = ^{a, b}"]),
    (f'"b" is no value of protocol: expected {", ".join(PROTOCOLS.split()[:-1])} or vcs', ["protocol = ^b"]),
    ('"static" is not understood: expected a comma or }', ["protocol in {bgp ^static}"]),
    ('"summary" is not understood: expected and, or, or the end', ["vias = 1 ^summary"]),
    ("the expression is not complete: expected and, or, or )", ["(vias = 1 ^"]),
    ("these quotes do not end", ['vias = 1 and interface = ^"Ethernet1']),
    ('"!" is not understood: expected !=, or not', ["^! hardware"]),
]

# A message and the command lines that it answers. A ^ stands ahead of the place that the caret of
# the message points to; the caret counts characters, not bytes.
WRONG_WORDS = [
    ("the command is not complete: expected ip, ipv6, nexthop-group, running-config, static or state",
     ["show ^"]),
    ("the command is not complete: expected route", ["show ip ^"]),
    ('"s" is short for several words: show, static or snapshot', ["^s ip route"]),
    ('"i" is short for several words: ip or ipv6', ["show ^i route"]),
    ('"foo" is not understood: expected route', ["show ip ^foo"]),
    ('"routes" is not understood: expected route', ["show ip ^routes"]),
    ('"foo" is not understood: expected vrf, an IPv4 address or prefix, detail, interface, '
     f"a protocol ({PROTOCOLS}), host, summary or where", ["show ip route ^foo"]),
    ('"foo" is not understood: expected an IPv6 address or prefix, detail, interface, '
     f"a protocol ({PROTOCOLS6}), host, summary or where", ["show ipv6 route vrf red ^foo"]),
    (f'"foo" is not understood: expected longer-prefixes, interface, a protocol ({PROTOCOLS}) or where',
     ["show ip route vrf red detail bgp 10.0.0.0/8 ^foo"]),
    ("ospf is a protocol of IPv4: no IPv6 route is of it",
     ["show ipv6 route ^ospf", "show ipv6 route vrf red ^ospf interface Ethernet1"]),
    ("vcs is a protocol of IPv4: no IPv6 route is of it",
     ["show ipv6 route 2001:db8::/32 ^vc longer-prefixes"]),
    ('"d" is short for several words: detail, dhcp or dynamic', ["show ip route ^d"]),
    ('"i" is short for several words: interface or isis', ["show ip route 10.1.0.0/16 ^i"]),
    ("expected the name of a VRF, or all",
     ["show ip route vrf ^", "show running-config static vrf ^"]),
    ("expected the name of an interface",
     ["show ip route interface ^", "show ip route vrf büro interface ^",
      "check address 10.0.0.1/24 secondary interface ^"]),
    ("longer-prefixes needs a prefix ahead of it, as in 10.0.0.0/8 longer-prefixes",
     ["show ip route longer-prefixes ^"]),
    ("longer-prefixes needs a prefix ahead of it, as in 2001:db8::/32 longer-prefixes",
     ["show ipv6 route bgp longer-prefixes ^"]),
    ("an IPv4 address or prefix stands twice", ["show ip route 10.1.0.0/16 ^10.2.0.0/16"]),
    ("detail stands twice", ["show ip route detail bgp ^detail"]),
    ("host stands twice", ["show ip route host ^host"]),
    ("vrf stands twice",
     ["show ip route vrf red ^vrf red", "show ip route vrf büro ^vrf red",
      "show nexthop-group vrf red ^vrf red"]),
    ('"10.0.0.1/8" has bits behind its mask: expected 10.0.0.0/8', ["show ip route ^10.0.0.1/8"]),
    ('"2001:db8::1/32" has bits behind its mask: expected 2001:db8::/32',
     ["show ipv6 route ^2001:db8::1/32"]),
    ('"10.0.0.300" is no IPv4 address or prefix', ["show ip route ^10.0.0.300"]),
    ('"10.0.0.0/33" is no IPv4 address or prefix', ["show ip route ^10.0.0.0/33"]),
    ('"10.0.0.0/" is no IPv4 address or prefix', ["show ip route ^10.0.0.0/"]),
    ('"10.0.0/8" is no IPv4 address or prefix', ["show ip route ^10.0.0/8"]),
    ('"2001:db8::1" is no IPv4 address or prefix', ["show ip route ^2001:db8::1"]),
    ('"10.1.0.0/16" is no IPv6 address or prefix', ["show ipv6 route ^10.1.0.0/16"]),
    ('"2001:db8::/129" is no IPv6 address or prefix', ["show ipv6 route ^2001:db8::/129"]),
    ('"2001:db8:::1" is no IPv6 address or prefix', ["show ipv6 route ^2001:db8:::1"]),
    ("host goes with vrf alone: the host route table is shown as a whole",
     ["show ip route host ^detail", "show ip route 10.1.0.0/16 ^host",
      "show ipv6 route host vrf red ^2001:db8::1", "show ip route host ^interface Ethernet1",
      "show ip route host ^where leaked",
      "show ip route bgp vrf all ^ho", "show ip route host ^longer-prefixes"]),
    ('"s" is short for several words: static or summary', ["show ip route ^s"]),
    ("summary goes with vrf alone: it counts the whole table",
     ["show ip route summary ^detail", "show ip route 10.1.0.0/16 ^summary",
      "show ipv6 route summary vrf red ^2001:db8::1", "show ip route summary ^interface Ethernet1",
      "show ip route bgp vrf all ^su", "show ip route summary ^longer-prefixes",
      "show ip route host vrf red ^summary"]),
    ('"b" is not understood: expected vrf', ["show nexthop-group a ^b"]),
    ("the name of a nexthop group stands twice", ["show nexthop-group a ^name b"]),
    ("the summary is of all nexthop groups; leave the name out",
     ["show nexthop-group summary ^name vrf", "show nexthop-group a ^summary"]),
    ('"c" is short for several words: check or clear', ["^c static"]),
    ('"interface" is not understood: expected vrf or all',
     ["show running-config static ^interface Ethernet1"]),
    ("all stands twice", ["show running-config static all vrf all ^all"]),
    ('"0" is no tag: expected 1 to 4294967295', ["show static tag ^0 dynamic"]),
    ('"4294967296" is no tag: expected 1 to 4294967295', ["show static tag ^4294967296"]),
    ('"7x" is no tag: expected 1 to 4294967295', ["show static dynamic tag ^7x"]),
    ("expected a tag, 1 to 4294967295", ["show static tag ^"]),
    ('"all" is not understood: expected dynamic, tag or vrf', ["show static ^all"]),
    ('"10.0.0.1" is no address with a mask length, as in 10.0.0.1/24',
     ["check address ^10.0.0.1 interface Ethernet1"]),
    ("the command is not complete: expected interface, secondary or replace",
     ["check address 10.0.0.1/24 ^"]),
    ("this is for IPv4 alone: all IPv6 addresses of an interface are of one kind, and each may be entered again",
     ["check address 2001:db8::1/64 interface Ethernet1 ^replace"]),
    ('"10.0.0.0/8" is no IPv4 or IPv6 address', ["check next-hop ^10.0.0.0/8"]),
    ('"red" is not understood: expected vrf', ["check next-hop 10.0.0.1 ^red"]),
    ('"65000" is no route distinguisher: expected ASN:N or A.B.C.D:N', ["check rd ^65000 vrf red"]),
    ("the command is not complete: expected vrf", ["check rd 65000:1 ^"]),
    ("the command is not complete: expected interface", ["clear static ^"]),
    ('"blue" is not understood: nothing is expected behind "red"',
     ["check next-hop 10.0.0.1 vrf red ^blue", "show ip route summary vrf red ^blue"]),
    ("expected the name of a file, or - for standard output", ["snapshot save ^"]),
    ('"again" is not understood: nothing is expected behind "-"', ["snapshot save - ^again"]),
    ('"foo" is not understood: expected show, check, clear, static, snapshot, types or help', ["^foo"]),
    ('"foo" is not understood: expected show, check, clear, static, snapshot, types, help or where',
     ["help ^foo"]),
    ('"foo" is not understood: nothing is expected behind "where"', ["help where ^foo"]),
    ("expected an expression, as in vias >= 2", ["show ip route vrf red where ^"]),
    ('"foo" is not understood: expected ip, ipv6, nexthop-group, running-config, static or state',
     ["help show ^foo"]),
    ('"vrf" is not understood: nothing is expected behind "route"', ["help show ip route ^vrf"]),
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
    (["show", "ip", "route", "--counters"],
     "--counters is of no use to show ip route: it goes with show nexthop-group"),
    (["--timing", "help"],
     "--timing is of no use to help: it goes with show ip route and show ipv6 route"),
    (["check", "next-hop", "10.0.0.1", "--into", "x"],
     "--into is of no use to check next-hop: it goes with clear static interface, static load and snapshot load"),
    (["types", "--version"], "--version is of no use to types: it goes without a command"),
]


class UsageTest(CommandTest):
    def test_wrong_words(self):
        expressions = [(message, ["show ip route where " + line for line in lines])
                       for message, lines in WRONG_EXPRESSIONS]
        for message, marked_lines in WRONG_WORDS + expressions:
            for marked in marked_lines:
                with self.subTest(marked):
                    before, _, behind = marked.partition("^")
                    result = rova(*(before + behind).split())
                    shown = (before + behind).rstrip()
                    caret = " " * len(before) + "^"
                    self.assert_ends(result, 2, f"rova: {message}\n  {shown}\n  {caret}\n")
                    self.assertEqual(result.stdout, "")

    def test_wrong_options(self):
        for words, message in WRONG_OPTIONS:
            with self.subTest(words):
                expected = f"rova: option {message}\n  rova --help lists the options\n"
                self.assert_ends(rova(*words), 2, expected)

    def test_no_command(self):
        expected = ("rova: the command is not complete: expected show, check, clear, static, snapshot, types or help\n"
                    "  rova --help shows the commands\n")
        self.assert_ends(rova(" "), 2, expected)

    def test_a_wrong_query_is_found_before_the_state_is_read(self):
        self.assertEqual(rova("show", "ip", "route", "foo", state="/nowhere").returncode, 2)


if __name__ == "__main__":
    unittest.main()
