// SPDX-License-Identifier: MIT
#pragma once

namespace tarvel {

struct BatchRequest;

/// "tarvel-batch rekey KEY-MAP DOCUMENT...": writes each document with the keys that the map gives,
/// "paper_rekeyed.tex" for "paper.tex". Returns the exit status: 2, with nothing written, when a
/// file cannot be read, the map is none, or an output would be an input or another output; 1 when
/// an output cannot be written, or a document was changed or cannot be read again: the other
/// documents are written then.
int RunRekeyCommand(const BatchRequest& request);

}  // namespace tarvel
