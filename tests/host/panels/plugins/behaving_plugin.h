// Test support: what the small plug-ins share; each has its own behaviour, metadata and factory.
#pragma once

#include <memory>
#include <string_view>

#include "platform/dialog/pde_plugin.h"

namespace labelcut::test {

/// What this plug-in does, good or bad; its own source defines it.
extern const std::string_view kBehaviour;

/// What the factory's constructor does: counts, or throws.
void construct();

/// The principal object, or null, as the behaviour wants it.
std::unique_ptr<PDEPlugin> createPrincipal();

} // namespace labelcut::test
