#!/usr/bin/env python3
"""Count the IPv4 routes that lead over each next hop, those of all VRFs together.

  count_by_next_hop.py STATE     kernel, kernel:NAME or the file of a snapshot
"""

import sys
from collections import Counter

import rova


def next_hops(route):
    """Where a route leads; a set, since several of its vias may lead to one next hop."""
    vias = route.get("vias") or [{}]
    return {via.get("nexthopAddr") or via.get("interface") or "nowhere" for via in vias}


def main(state):
    device = rova.open(state)
    counts = Counter()
    for vrf in device.vrfs:
        listing = rova.RouteSorter(device.ip(vrf)).model()
        for route in listing["routes"].values():
            counts.update(next_hops(route))
    for hop, count in counts.most_common():
        print(f"{count:7} {hop}")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
