// Property sheets of the common controls: the page handle that the common property-sheet host passes around.
#pragma once

#include <windows.h>

typedef struct _PSP* HPROPSHEETPAGE;
