#pragma once

#include <QDomDocument>

class QIODevice;

/// Parses a document of outside origin. Elements may nest at most 200 deep, since a tree of elements is
/// walked and freed by recursion, and declarations inside the document are refused. Throws Error 39 with the
/// parser's text.
QDomDocument parseXml(QIODevice& device);
