#pragma once

#include <QMetaType>
#include <QString>

#include <exception>

/// The one exception type of the pipeline: a text for the user and a code that tells the family of the fault.
/// Thrown where a fault is found, caught at the edge (a job's step, a batch step, a dialog).
class Error : public std::exception {
public:
    /// The families, as support and scripts know them.
    enum Code : int {
        DataFile = 11,          ///< data file writing and variant names
        TextureFile = 12,       ///< texture writing
        PvrLimit = 14,          ///< what a PVR file can't hold
        PixelFormat = 16,       ///< unknown pixel format
        DitherType = 17,        ///< unknown dither type
        AlgorithmId = 18,       ///< unknown algorithm
        Exporter = 19,          ///< exporter lookup and template output
        FileSuffix = 20,        ///< file name suffix rules
        Save = 21,              ///< a project can't be saved
        Open = 22,              ///< a project or movie can't be opened or read
        FilterName = 32,        ///< filter and wrap names
        CommandLine = 36,       ///< command line and missing values
        Batch = 38,             ///< batch rules
        Parse = 39,             ///< parsing of XML, and size conflicts
        Flash = 40,             ///< Flash files and exporter versions
        FlashPlayer = 41,       ///< Flash Player missing
        ScaledSprite = 42,      ///< scaled sprite too large
        Descriptor = 45,        ///< unreadable exporter descriptor
        DescriptorContent = 51, ///< bad content of a descriptor
        Unknown = 52,           ///< a default Error
        OutOfMemory = 53,       ///< an image can't be made
        CacheFile = 54,         ///< image cache file
        EnumName = 55,          ///< a name that an enum hasn't
    };

    Error();
    Error(int code, const QString& message);

    int code() const { return m_code; }
    const QString& message() const { return m_message; }

    /// The message as UTF-8.
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    int m_code;
    QString m_message;
    QByteArray m_utf8;
};

Q_DECLARE_METATYPE(Error)
