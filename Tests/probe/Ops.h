#pragma once

#include "probe/Arguments.h"

#include <functional>
#include <map>
#include <string>

namespace varnic::probe {

/// What a request does: one call of the core between decoding and encoding.
using Operation = std::function<Json(const Arguments&)>;
using Operations = std::map<std::string, Operation>;

Operations textOps();
Operations noteOps();
Operations editorOps();
Operations callOps();
Operations summariserOps();
Operations libraryOps();
Operations sessionOps();
Operations exchangeOps();
Operations updateOps();
Operations aiOps();
Operations inkOps();

} // namespace varnic::probe
