// What the shared library shows to the outside; all else in it is hidden.
#pragma once

#define ROVA_EXPORT __attribute__((visibility("default")))
