#pragma once

/// Tells the template library which properties of sprites, source files, sizes, rectangles and points a
/// template can read. Any thread; what was registered once stays for the life of the process.
void registerTemplateProperties();
