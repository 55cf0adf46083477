#pragma once

#include "SettingsBase.h"

/// The four PVRTC formats, which only squares of a power of two can hold.
inline bool isPvrtcFormat(SettingsBase::OutputFormat format) {
    using Format = SettingsBase::OutputFormat;
    return format == Format::PVRTC2 || format == Format::PVRTC4 || format == Format::PVRTC2_NOALPHA ||
           format == Format::PVRTC4_NOALPHA;
}
