#!/usr/bin/env python3
"""Show how the IPv4 routes of two states differ: - only in the first, + only in the second,
~ in both but not alike.

  diff_routes.py STATE STATE [VRF]     a state is kernel, kernel:NAME or the file of a snapshot
"""

import sys

import rova


def routes(state, vrf):
    return rova.RouteSorter(rova.open(state).ip(vrf)).model()["routes"]


def main(before, after, vrf="default"):
    old, new = routes(before, vrf), routes(after, vrf)
    for prefix in sorted(old.keys() | new.keys()):
        if prefix not in new:
            print("-", prefix)
        elif prefix not in old:
            print("+", prefix)
        elif old[prefix] != new[prefix]:
            changed = sorted(key for key in old[prefix].keys() | new[prefix].keys()
                             if old[prefix].get(key) != new[prefix].get(key))
            print("~", prefix, ", ".join(changed))


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    main(*sys.argv[1:])
