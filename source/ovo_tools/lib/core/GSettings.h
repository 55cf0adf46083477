#pragma once

#include <QSettings>

/// The user's and machine's store, under the names that the application object carries. Made on the stack for
/// each access, so that any thread may use it; nothing is cached.
class GSettings : public QSettings {
public:
    using QSettings::QSettings;
};
