#include "infr_libs/AutoDefines/zs1bAutoDefines.h"

#include "infr_libs/AutoDefines/DeviceConstants.h"

zs1bAutoDefines::zs1bAutoDefines(unsigned arch) : AutoDefines(arch) {
#define ZELM_FIELD_VALUE(name, mask, shift, ...) m_##name = {mask, shift};
    ZELM_REGISTER_FIELDS(ZELM_FIELD_VALUE)
#define ZELM_CONSTANT_VALUE(member, zs1b, zs1c, zs2a) member = zs1b;
    ZELM_DEVICE_CONSTANTS(ZELM_CONSTANT_VALUE)
}

zs1bAutoDefines::~zs1bAutoDefines() = default;
