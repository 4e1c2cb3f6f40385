# SPDX-License-Identifier: MIT
"""Whether the dialogs fit a screen as low as that of a laptop that shows everything at twice its
size: low_screen.py PROGRAM"""

from looks import FitTest
from window import main


class LowScreen(FitTest):
    def test_dialogs_fit(self):
        self.assert_dialogs_fit(self.start())


if __name__ == "__main__":
    main()
