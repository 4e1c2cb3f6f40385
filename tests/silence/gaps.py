# SPDX-License-Identifier: MIT
"""What is known to be lost in silence. `prove.py` counts it apart and prints the list, so that it is
not forgotten; a row goes when the program warns of the loss."""
import dataclasses
from typing import Callable


@dataclasses.dataclass
class Gap:
    text: str                            # for people
    operations: tuple
    whats: tuple
    fits: Callable = lambda library, loss: True


GAPS = (
)


def of(operation, library, loss):
    """The text of the gap that the loss falls into; empty when it is in none."""
    for gap in GAPS:
        if operation in gap.operations and loss.what in gap.whats and gap.fits(library, loss):
            return gap.text
    return ""
