#include "infr_libs/ErrorHandler/PrintLeaks.h"

void PrintLeaks() {}
