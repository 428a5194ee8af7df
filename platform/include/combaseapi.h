// Task memory and the exports of a COM server.
#pragma once

#include <objbase.h>
