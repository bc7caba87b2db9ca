#!/usr/bin/env python3
"""Different ways to write one command: abbreviations, one argument, both ways to ask for JSON."""

import unittest

from support import CommandTest, all_scenarios, parse_json, rova

# What is typed, and the command that it stands for.
SAME = [
    ("sh ip ro", "show ip route"),
    ("sho ip r", "show ip route"),
    ("sh ipv r", "show ipv6 route"),
    ("sh ip ro 10.1.0.0/16 lo", "show ip route 10.1.0.0/16 longer-prefixes"),
    ("sh ip ro vr red st", "show ip route vrf red static"),
    ("sh ip ro static det vrf red", "show ip route vrf red detail static"),
    ("sh ip ro int Ethernet1", "show ip route interface Ethernet1"),
    ("sh ip ro ospf", "show ip route ospf"),
    ("sh ip ro h | json", "show ip route host | json"),
    ("sh ipv6 ro ho vr red | json", "show ipv6 route vrf red host | json"),
    ("sh ip ro su", "show ip route summary"),
    ("sh ipv6 ro vr red sum | json", "--format json show ipv6 route summary vrf red"),
    ("sn s -", "snapshot save -"),
    ("sh ru st v all a | json", "show running-config static vrf all all | json"),
    ("sh stati v red dy", "show static dynamic vrf red"),
    ("ch a 10.0.0.1/24 sec int Ethernet1 r",
     "check address 10.0.0.1/24 interface Ethernet1 secondary replace"),
    ("sh ip ro | json", "--format json show ip route"),
    ("sh ipv6 ro vrf all | json", "--format json show ipv6 route vrf all"),
    ("--format=json show ip route", "--format json show ip route"),
    ("--format text show ip route | json", "--format json show ip route"),
    ("--format json --format text show ip route", "show ip route"),
    ("--help", "help"),
    ("h sh ip ro", "help show ip route"),
    ("show ip route vrf red --help", "help show ip route"),
    ("--timing -h sh ru", "help show running-config"),
]


class WordsTest(CommandTest):
    def test_same_output(self):
        for typed, command in SAME:
            with self.subTest(typed):
                result = rova(*typed.split())
                self.assert_succeeds(result)
                self.assertEqual(result.stdout, rova(*command.split()).stdout)

    def test_a_whole_command_in_one_argument(self):
        expected = rova("show", "ip", "route", "vrf", "red").stdout
        for words in (["show ip route vrf red"], [" show\tip  route\n", "\vvrf red\f", " "]):
            self.assertEqual(rova(*words).stdout, expected)

    def test_an_exact_word_wins_over_longer_ones(self):
        self.assertNotEqual(rova("show", "ip", "route").stdout,
                            rova("show", "ipv6", "route").stdout)

    def test_timing_leaves_the_model_alone(self):
        self.assertEqual(rova("--timing", "show", "ip", "route", "| json").stdout,
                         rova("show", "ip", "route", "| json").stdout)

    def test_a_pipe_to_json_is_the_format_for_every_scenario(self):
        for scenario in all_scenarios():
            with self.subTest(scenario.name):
                asked = scenario.run("--format", "json")
                piped = rova(*scenario.words, "|", "json", state=scenario.snapshot)
                self.assert_ends(piped, asked.returncode, asked.stderr.decode())
                self.assertEqual(piped.stdout, asked.stdout.decode())
                if asked.returncode == 0:
                    parse_json(piped.stdout)

    def test_help_and_version(self):
        for words, start in ((["--help"], "usage: rova"), (["-h"], "usage: rova"),
                             (["--version"], "rova "),
                             (["--help", "show"], "usage: rova show ...\n"),
                             (["help", "types"], "usage: rova types [NAME]\n")):
            with self.subTest(words):
                result = rova(*words)
                self.assert_succeeds(result)
                self.assertTrue(result.stdout.startswith(start), result.stdout)


if __name__ == "__main__":
    unittest.main()
