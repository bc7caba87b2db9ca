// Visibility of what crosses a shared library's border by type identity: exceptions, entity bases.
#pragma once

#define LUMO_EXPORT __attribute__((visibility("default")))
