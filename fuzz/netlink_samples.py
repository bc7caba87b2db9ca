#!/usr/bin/env python3
"""Write the samples that the fuzzing of the kernel's messages starts from: a kernel with an object
of each kind, and what it tells of them.

  fuzz/netlink_samples.py FOLDER
"""

import ipaddress
import itertools
import pathlib
import struct
import sys

NEWLINK, DELLINK, NEWADDR, DELADDR, NEWROUTE, DELROUTE = 16, 17, 20, 21, 24, 25
NEWNEIGH, DELNEIGH, NEWNEXTHOP, DELNEXTHOP = 28, 29, 104, 105
UNSPEC, INET, INET6 = 0, 2, 10
MAIN, LOCAL = 254, 255
UP = 0x10041
MPLS, IP, SEG6 = 1, 2, 5  # kinds of encapsulations


def u16(number):
    return struct.pack("=H", number)


def u32(number):
    return struct.pack("=I", number)


def ip(text):
    return ipaddress.ip_address(text).packed


def padded(data):
    return data + bytes(-len(data) % 4)


def attribute(kind, data):
    return padded(struct.pack("=HH", 4 + len(data), kind) + data)


def attributes(*pairs):
    return b"".join(attribute(kind, data) for kind, data in pairs)


def message(kind, payload, told=False, dump=0, flags=0):
    return padded(struct.pack("=IHHII", 16 + len(payload), kind, flags, 0 if told else 1, dump)
                  + payload)


def link(index, name, *pairs, flags=UP):
    return struct.pack("=BxHiII", UNSPEC, 1, index, flags, 0) + attributes(
        (3, name + b"\0"), *pairs)


def link_info(kind, *pairs):
    return 18, attributes((1, kind), (2, attributes(*pairs)))


def address(index, text, length, flags=0):
    packed = ip(text)
    return struct.pack("=BBBBI", INET if len(packed) == 4 else INET6, length, flags, 0,
                       index) + attributes((1, packed), (2, packed))


def neighbour(index, text, state=2):
    packed = ip(text)
    return struct.pack("=BxxxiHBB", INET if len(packed) == 4 else INET6, index, state, 0,
                       1) + attributes((1, packed), (2, bytes.fromhex("020000000001")))


def nexthop(number, *pairs, family=INET, flags=0):
    return struct.pack("=BBBxI", family, 0, 0, flags) + attributes((1, u32(number)), *pairs)


def group(number, *members):
    rows = b"".join(struct.pack("=IBBH", member, 0, 0, 0) for member in members)
    counts = attributes(*((1, attributes((1, u32(member)), (2, u32(5)))) for member in members))
    return nexthop(number, (2, rows), (15, counts), family=UNSPEC)


def route(prefix, *pairs, table=MAIN, kind=1, protocol=4, tos=0, flags=0):
    network = ipaddress.ip_network(prefix)
    family = INET if network.version == 4 else INET6
    return struct.pack("=BBBBBBBBI", family, network.prefixlen, 0, tos, min(table, 252), protocol, 0,
                       kind, flags) + attributes((1, network.network_address.packed),
                                                 (15, u32(table)), *pairs)


def via(text, index):
    return (5, ip(text)), (4, u32(index))


def row(index, weight, *pairs):
    data = attributes(*pairs)
    return struct.pack("=HBBi", 8 + len(data), 0, weight - 1, index) + data


def encapsulated(kind, *pairs):
    return (21, u16(kind)), (22, attributes(*pairs))


def labels(*numbers):
    return encapsulated(MPLS, (1, b"".join(struct.pack(">I", number << 12) for number in numbers)))


def segments(*addresses):
    stored = b"".join(ip(text) for text in reversed(addresses))
    last = len(addresses) - 1
    header = struct.pack("=BBBBBBH", 0, len(stored) // 8, 4, last, last, 0, 0)
    return encapsulated(SEG6, (1, u32(1) + header + stored))


LINKS = [
    link(1, b"lo"), link(2, b"eth1", (20, b"to leaf\0"), (10, u32(4))), link(3, b"a\xff"),
    link(4, b"red", link_info(b"vrf", (1, u32(10)))),
    link(5, b"default", link_info(b"vrf", (1, u32(0xffffffff)))),
    link(6, b"vx1", link_info(b"vxlan", (1, u32(100)))),
    link(7, b"gre1", link_info(b"gre", (6, ip("10.9.0.1")), (7, ip("10.9.0.2")))),
]
ADDRESSES = [address(2, "10.1.0.1", 24), address(2, "10.1.0.7", 24, 1), address(3, "fd01::1", 64)]
NEIGHBOURS = [neighbour(2, "10.1.0.2"), neighbour(3, "fe80::2"), neighbour(6, "10.9.0.2", 0x40)]
NEXTHOPS = [nexthop(1, (5, u32(2)), (6, ip("10.1.0.2"))), nexthop(2, (4, b"")),
            nexthop(3, (5, u32(3)), (6, ip("fe80::2")), family=INET6), group(10, 1, 2, 3, 9)]
ROUTES = [
    route("10.1.0.0/24", (4, u32(2)), protocol=2), route("10.1.0.1/32", table=LOCAL, kind=2),
    route("0.0.0.0/0", *via("10.1.0.2", 2), (6, u32(50))),
    route("20.0.0.0/8", (9, row(2, 1, (5, ip("10.1.0.2"))) + row(3, 7, (5, ip("10.1.0.3"))))),
    route("21.0.0.0/8", (30, u32(10)), flags=0x4000), route("22.0.0.0/8", kind=6, table=7),
    route("23.0.0.0/8", *via("10.1.0.2", 2), *labels(100, 200)),
    route("24.0.0.0/8", *via("10.1.0.2", 2), *labels(100), table=0xfffffffe),
    route("25.0.0.0/8", *via("10.1.0.2", 2), tos=8),
    route("26.0.0.0/8", (4, u32(6)), *encapsulated(IP, (1, struct.pack(">Q", 100)),
                                                   (2, ip("10.9.0.2")))),
    route("27.0.0.0/8", (18, u16(INET6) + ip("fe80::2")), (4, u32(3)), table=10),
]
ROUTES6 = [
    route("fd00::/8", *via("fe80::2", 3), protocol=186), route("::/0", kind=7, table=0xffffffff),
    route("fd02::/64", (4, u32(2)), *segments("fd03::1", "fd03::2"), table=10),
]
OBJECTS = [(NEWLINK, LINKS), (NEWADDR, ADDRESSES), (NEWNEIGH, NEIGHBOURS), (NEWNEXTHOP, NEXTHOPS),
           (NEWROUTE, ROUTES), (NEWROUTE, ROUTES6)]
GONE = [(DELLINK, LINKS[1]), (DELADDR, ADDRESSES[0]), (DELNEIGH, NEIGHBOURS[0]),
        (DELNEXTHOP, NEXTHOPS[0]), (DELROUTE, ROUTES[2]),
        (NEWLINK, link(2, b"eth1", flags=0)), (NEWROUTE, ROUTES[4])]


def samples():
    still = b"".join(message(kind, one) for kind, all_ in OBJECTS for one in all_)
    yield "everything", still
    for number, (kind, objects) in enumerate(OBJECTS):
        yield f"kind-{number}", b"".join(message(kind, one) for one in LINKS[:3] + objects)
    for number, (kind, one) in enumerate(GONE):
        for dump in (1, 5, 6):
            yield f"told-{number}-{dump}", still + message(kind, one, told=True, dump=dump)
    yield "interrupted", message(NEWROUTE, ROUTES[0], flags=0x10) + still
    yield "refused", still + message(2, struct.pack("=i", -95))
    yield "lost", b"".join(message(NEWROUTE, one, dump=dump) for one, dump in
                           zip(ROUTES6 + ROUTES, itertools.cycle((6, 7, 8)))) + message(
        NEWROUTE, ROUTES6[0], told=True)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for name, data in samples():
        (folder / name).write_bytes(data)


if __name__ == "__main__":
    main()
