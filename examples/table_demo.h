// The table part of the demo: a few thousand rows, filtered and sorted.
#pragma once

void ShowTable();
