// The example mappings, and native data for them.
#pragma once

#include <cstddef>
#include <string>

#include "framework/module_loader.h"
#include "reply.h"
#include "requests.h"

namespace tvk::bench {

const framework::Mappings &mappings_of(Model model);

// Returns the native data that results when the entries' configuration is edited in and applied. It is made on demand
// and kept.
const std::string &native_data(Model model, std::size_t entries);

// Throws unless it is a reply to a request that went well.
void check(const tool::Reply &reply);

}  // namespace tvk::bench
