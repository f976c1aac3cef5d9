#include "infr_libs/AutoDefines/zs1cAutoDefines.h"

#include "infr_libs/AutoDefines/DeviceConstants.h"

zs1cAutoDefines::zs1cAutoDefines(unsigned arch) : AutoDefines(arch) {
#define ZELM_FIELD_VALUE(name, mask1b, shift1b, mask, shift, ...) m_##name = {mask, shift};
    ZELM_REGISTER_FIELDS(ZELM_FIELD_VALUE)
#define ZELM_CONSTANT_VALUE(member, zs1b, zs1c, zs2a) member = zs1c;
    ZELM_DEVICE_CONSTANTS(ZELM_CONSTANT_VALUE)
}

zs1cAutoDefines::~zs1cAutoDefines() = default;
