// The platform's types that attributes of this library hold, with their names in attribute tables.
#pragma once

#include "state/TypeNames.h"
#include "tunnel/CliSupport.h"
