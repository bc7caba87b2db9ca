"""Routing state of a device, and the displays of it, as Python objects.

    import rova
    device = rova.open("snapshot.json")
    sorter = rova.RouteSorter(device.ip("red"), detail=True)
    routes = sorter.model()

Each type of the library is a class of this package: construct it from the handles of a device,
read and write its attributes, call its methods, walk its collections.
"""

from ._rova import *  # noqa: F401,F403
