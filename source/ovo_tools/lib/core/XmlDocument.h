#pragma once

#include <QDomDocument>

class QIODevice;

/// Parses a document of outside origin: at most 64 MiB, two million elements and texts and 200 attributes an
/// element. Elements may nest at most 200 deep, since a tree of elements is walked and freed by recursion,
/// and declarations inside the document are refused. Throws Error 39 with the parser's text.
QDomDocument parseXml(QIODevice& device);
