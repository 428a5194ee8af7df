// What the language modules say of the product in every language: for resource scripts.
#pragma once

#define PRODUCT_NAME "Velmora"
#define PRODUCT_MAKER "Kestranix Inc."
#define PRODUCT_VERSION 1, 0, 0, 0
#define PRODUCT_VERSION_TEXT "1.0.0.0"
