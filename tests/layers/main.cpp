// SPDX-License-Identifier: MIT
// Does nothing: that it links is the test.
int main() {}
