// RovaCliSupport: the work behind the routing commands of a network operating system's CLI.
//
// Include this one header, link `RovaCliSupport::rovaclisupport`, or load librovaclisupport.so at
// run time: its types stand in the registry of lumo/Type.h when it is loaded.
#pragma once

#include "rova/check/AddressAssignmentChecker.h"
#include "rova/check/ClearInterfaceRoutes.h"
#include "rova/check/NextHopCheckers.h"
#include "rova/check/RdAssignmentChecker.h"
#include "rova/core/Trace.h"
#include "rova/core/Watchdog.h"
#include "rova/fec/CachedFec.h"
#include "rova/fec/Policies.h"
#include "rova/fec/SortedTunVia.h"
#include "rova/nexthopgroup/NexthopGroupHelper.h"
#include "rova/nexthopgroup/NexthopGroupSummaryHelper.h"
#include "rova/route/DisplayAttrInfo.h"
#include "rova/route/OpenSorter.h"
#include "rova/route/RouteEntries.h"
#include "rova/route/Selection.h"
#include "rova/route/ShownRoutes.h"
#include "rova/route/Sorter.h"
#include "rova/staticroute/StaticRoutesCliSaver.h"
#include "rova/staticroute/StaticRoutesRibCommon.h"
#include "rova/summary/Summary.h"
