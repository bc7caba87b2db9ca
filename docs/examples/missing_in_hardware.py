#!/usr/bin/env python3
"""List the routes of all VRFs that the hardware does not have. The exit status is 1 if any.

  missing_in_hardware.py STATE     kernel, kernel:NAME or the file of a snapshot
"""

import sys

import rova


def missing(listing):
    return [prefix for prefix, route in listing["routes"].items()
            if not route["hardwareProgrammed"]]


def main(state):
    device = rova.open(state)
    count = 0
    for vrf in device.vrfs:
        for listing in (rova.RouteSorter(device.ip(vrf)).model(),
                        rova.Route6Sorter(device.ip6(vrf)).model()):
            for prefix in missing(listing):
                print(f"{vrf}: {prefix}")
                count += 1
    return 1 if count else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1]))
