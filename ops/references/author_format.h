// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "ops/journal_styles.h"

namespace tarvel {

/// Rewrites a list of names ("Last, First and Last, First ...") into the form that a journal style
/// gives it; empties it when no style is selected. "Doe, J. and Roe, K. and Poe, L." becomes
///   ACS       Doe, J.; Roe, K.; Poe, L.
///   APS       J. Doe, K. Roe and L. Poe
///   IOP       Doe J, Roe K and Poe L      (with a blank at the end)
///   Nature    Doe, J., Roe, K. \& Poe, L.
///   Wiley     J. Doe, K. Roe, L. Poe
///   Springer  Doe J, Roe K, Poe L
/// Takes any bytes. Only APS and Wiley look for " and " between names; the others take every " and"
/// for one, that of "Doe, J. andersson" too.
void FormatAuthorList(std::string& list, std::optional<JournalStyle> style);

}  // namespace tarvel
