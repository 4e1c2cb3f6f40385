// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tarvel {

/// Compares a list of authors with the one that it became, both read as BibTeX reads them: says in
/// words which name has another surname or other initials, or that there are more or fewer names.
/// Empty when the people are the same, and for a list with "et al." or "others".
std::string WhatChanged(std::string_view old_list, std::string_view new_list);

}  // namespace tarvel
