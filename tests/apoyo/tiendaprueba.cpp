// The shop is whole in its header; this file gives its library a source of its own.
#include "tiendaprueba.h"
