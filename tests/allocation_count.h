#pragma once

/// Calls of operator new by this thread so far.
long allocationCount();
