#include "DataFormats.h"

namespace {
const DataFormats* registered = nullptr;
}

void DataFormats::setInstance(const DataFormats* formats) { registered = formats; }

const DataFormats* DataFormats::instance() { return registered; }
