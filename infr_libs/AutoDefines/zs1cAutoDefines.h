#pragma once

#include "infr_libs/AutoDefines/AutoDefines.h"

// The definitions of the zs1c architecture.
class zs1cAutoDefines : public AutoDefines {
public:
    explicit zs1cAutoDefines(unsigned arch);
    ~zs1cAutoDefines() override;
};
