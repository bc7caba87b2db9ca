"""Random changes of a namespace's routing, as `ip` commands. Some fail, as those of administrators do."""

import random

GATEWAYS = {4: [("10.1.0.2", "eth1"), ("10.1.0.3", "eth1"), ("10.2.0.2", "eth2"),
                ("10.5.0.2", "eth3")],
            6: [("fd01::2", "eth1"), ("fe80::7", "eth1"), ("fd02::2", "eth2")]}
PROTOCOLS = ["static", "bgp", "ospf", "boot", "kernel", "77"]


class Operations:
    """Makes commands; one seed always makes the same ones."""

    def __init__(self, seed):
        self.random = random.Random(seed)

    def pick(self, of):
        return self.random.choice(of)

    def prefix(self, family):
        number = self.random.randrange(24)
        lengths = {4: (16, 24, 32), 6: (48, 64, 128)}[family]
        return (f"20.{number}.0.0/{self.pick(lengths)}" if family == 4
                else f"fd20:{number:x}::/{self.pick(lengths)}")

    def hop(self, family):
        gateway, link = self.pick(GATEWAYS[family])
        return self.pick([f"via {gateway} dev {link}", f"dev {link}"])

    def way(self, family):
        """Where a route leads."""
        kind = self.random.randrange(10)
        if kind < 5:
            return self.hop(family)
        if kind < 8:
            hops = " ".join(f"nexthop {self.hop(family)} weight {self.random.randint(1, 3)}"
                            for _ in range(self.random.randint(2, 3)))
            return hops
        return f"nhid {self.pick([1, 2, 3, 10, 11] if family == 4 else [4, 5, 12])}"

    def route(self):
        family = self.pick([4, 6])
        verb = self.pick(["add", "add", "add", "replace", "replace", "append", "change", "del", "del"])
        to = self.prefix(family)
        metric = self.pick(["", "", " metric 5", " metric 20"])
        table = self.pick(["", "", "", "", " table 70", " table 100"])
        if verb == "del":
            return f"-{family} route del {to}{metric}{table}"
        protocol = f" proto {self.pick(PROTOCOLS)}"
        if self.random.randrange(8) == 0:
            kind = self.pick(["blackhole", "unreachable", "prohibit"])
            return f"-{family} route {verb} {kind} {to}{metric}{table}{protocol}"
        return f"-{family} route {verb} {to}{metric}{table}{protocol} {self.way(family)}"

    def nexthop(self):
        number = self.pick([1, 2, 3, 4, 5])
        if self.random.randrange(4) == 0:
            return f"nexthop del id {self.pick([1, 2, 3, 4, 5, 10, 11, 12])}"
        if self.random.randrange(3) == 0:
            return self.pick(["nexthop replace id 10 group 1/2", f"nexthop replace id 10 group 1,3/2",
                              "nexthop replace id 11 group 2,3", "nexthop replace id 12 group 4,5",
                              f"nexthop replace id 11 group 1,{self.random.randint(1, 4)}/2,3"])
        family = 4 if number < 4 else 6
        gateway, link = self.pick(GATEWAYS[family])
        return self.pick([f"nexthop replace id {number} via {gateway} dev {link}",
                          f"nexthop replace id {number} via {gateway} dev {link}",
                          f"nexthop replace id {number} blackhole"])

    def link(self):
        link = self.pick(["eth1", "eth2", "peer1", "peer2", "red", "eth3", "peer3"])
        return self.pick([f"link set {link} {self.pick(['up', 'up', 'down'])}",
                          f"link set {link} {self.pick(['up', 'up', 'down'])}",
                          "link add eth3 type veth peer name peer3", "link del eth3",
                          "link add red type vrf table 70", "link del red",
                          "link set eth3 master red", "link set eth3 nomaster",
                          f"link set eth3 alias name{self.random.randrange(3)}"])

    def address(self):
        verb = self.pick(["add", "del"])
        link = self.pick(["eth1", "eth2", "eth3", "peer3"])
        number = self.random.randrange(3)
        return self.pick([f"addr {verb} 10.1.0.{number + 1}/24 dev {link}",
                          f"addr {verb} 10.{number + 5}.0.1/16 dev {link}",
                          f"-6 addr {verb} fd0{number + 1}::1/64 dev {link} nodad"])

    def neighbour(self):
        family = self.pick([4, 6])
        gateway, link = self.pick(GATEWAYS[family])
        if self.random.randrange(3) == 0:
            return f"-{family} neigh del {gateway} dev {link}"
        return (f"-{family} neigh replace {gateway} dev {link} nud permanent "
                f"lladdr 02:00:00:00:00:0{self.random.randrange(10)}")

    def one(self):
        kinds = [self.route] * 12 + [self.nexthop] * 3 + [self.neighbour] * 2 + [self.link] * 2
        return self.pick(kinds + [self.address])()

    def some(self, count, *kinds):
        """That many; of the given kinds alone where there are any."""
        return [self.pick(kinds)() if kinds else self.one() for _ in range(count)]
