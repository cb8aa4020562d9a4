#pragma once

// Whole files in and out. The command needs them too, so they are declared among the public
// headers.

#include "greycard/files.h"
