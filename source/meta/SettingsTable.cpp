#include "SettingsTable.h"

namespace meta {

const std::vector<Enum>& globalEnums() {
    static const std::vector<Enum> table = {
        {"ScaleMode",
         "Filter that resizes sprites.",
         {{"Smooth", nullptr, nullptr},
          {"Fast", "Fast (Nearest Neighbor)", nullptr},
          {"Scale2x", "Scale2x (fixed 2x upscaling)", nullptr},
          {"Scale3x", "Scale3x (fixed 3x upscaling)", nullptr},
          {"Scale4x", "Scale4x (fixed 4x upscaling)", nullptr},
          {"Eagle", "Eagle2x (fixed 2x upscaling)", nullptr},
          {"Hq2x", "Hq2x (fixed 2x upscaling)", nullptr}}},
    };
    return table;
}

namespace {

const Class spriteSettings = {
    "SpriteSettings",
    "How sprites are prepared before packing.",
    {{"TrimMode",
      "What happens to transparent borders.",
      {{"None", nullptr, "Keep transparent pixels"},
       {"Trim", nullptr, "Remove transparent pixels, use original size."},
       {"Crop", "Crop, flush position", "Remove transparent pixels, use trimmed size, flush position."},
       {"CropKeepPos", "Crop, keep position",
        "Remove transparent pixels, use trimmed size, keep position."}}}},
    {{"scale", Type::Double, "", "1.0", "Scale of all sprites before packing."},
     {"scaleMode", Type::Enum, "ScaleMode", "Smooth", "Scaling filter."},
     {"innerPadding", Type::UInt, "", "0", "Pixels added around a sprite; they count in its size."},
     {"extrude", Type::UInt, "", "0", "Pixels by which a sprite's border is repeated."},
     {"trimThreshold", Type::UInt, "", "1", "Alpha values under this value count as transparent, 1..255."},
     {"trim", Type::Bool, "", "true", "Old switch, replaced by trimMode.", Storage::ReadOnly},
     {"crop", Type::Bool, "", "false", "Old switch, replaced by trimMode.", Storage::ReadOnly},
     {"trimMode", Type::Enum, "TrimMode", "Trim", "What happens to transparent borders."},
     {"heuristicMask", Type::Bool, "", "false", "Equal coloured border pixels become transparent."}}};

const Class maxRectsSettings = {
    "AlgorithmMaxRectsSettings",
    "Settings of the MaxRects packer.",
    {{"Heuristic",
      "How MaxRects chooses the next sprite and its place.",
      {{"Best", nullptr, nullptr},
       {"ShortSideFit", nullptr, nullptr},
       {"LongSideFit", nullptr, nullptr},
       {"AreaFit", nullptr, nullptr},
       {"BottomLeft", nullptr, nullptr},
       {"ContactPoint", nullptr, nullptr}}}},
    {{"heuristic", Type::Enum, "Heuristic", "Best", "Placing rule; Best tries all."}}};

const Class basicSettings = {
    "AlgorithmBasicSettings",
    "Settings of the row packer.",
    {{"SortBy",
      "Sort key of the row packer.",
      {{"Best", nullptr, nullptr},
       {"Name", nullptr, nullptr},
       {"Width", nullptr, nullptr},
       {"Height", nullptr, nullptr},
       {"Area", nullptr, nullptr},
       {"Circumference", nullptr, nullptr}}},
     {"Order",
      "Sort direction of the row packer.",
      {{"Ascending", nullptr, nullptr}, {"Descending", nullptr, nullptr}}}},
    {{"sortBy", Type::Enum, "SortBy", "Best", "Sort key; Best tries all."},
     {"order", Type::Enum, "Order", "Ascending", "Sort direction."}}};

const Class algorithmSettings = {
    "AlgorithmSettings",
    "The packing algorithm and the sizes that it may choose.",
    {{"AlgorithmId", "The packers.", {{"MaxRects", nullptr, nullptr}, {"Basic", nullptr, nullptr}}},
     {"AlgorithmFreeSizeMode",
      "Effort spent on the size search.",
      {{"Fast", nullptr, "Crops power of 2 packing values to really used size"},
       {"Good", nullptr, "Repacks contents, trying to get at least 90% of texture usage"},
       {"Best", nullptr, "Delivers best packing, might take some time..."}}},
     {"SizeConstraints",
      "Allowed texture sizes.",
      {{"POT", "POT (Power of 2)", "Power of 2 (2,4,8,16,32,...)"},
       {"AnySize", "Any size", "Minimum size"},
       {"NPOT", "NPOT (Any size but power of 2)", "Any size but power of 2"}}}},
    {{"algorithm", Type::Enum, "AlgorithmId", "MaxRects", "Packer."},
     {"freeSizeMode", Type::Enum, "AlgorithmFreeSizeMode", "Best", "Effort spent on the size search."},
     {"sizeConstraints", Type::Enum, "SizeConstraints", "POT", "Allowed texture sizes."},
     {"forceSquared", Type::Bool, "", "false", "Width equals height."},
     {"forceWordAligned", Type::Bool, "", "false", "Word alignment of the texture's rows."},
     {"maxRects", Type::Object, "AlgorithmMaxRectsSettings", "", "Settings of MaxRects."},
     {"basic", Type::Object, "AlgorithmBasicSettings", "", "Settings of the row packer."}}};

const Class autoSDSettings = {
    "AutoSDSettings",
    "One further resolution of a sheet.",
    {},
    {{"scale", Type::Double, "", "1.0", "Scale of the variant relative to the main sheet."},
     {"extension", Type::String, "", "", "Replaces mainExtension in the file names."},
     {"acceptFractionalValues", Type::Bool, "", "false",
      "The variant may take part in an identical layout with a scale that gives no whole sizes."},
     {"maxTextureSize", Type::Size, "", "QSize(2048, 2048)", "Largest texture of the variant."}}};

const Class andEngineWrap = {
    "AndEngineWrap",
    "Texture wrapping in AndEngine files.",
    {{"Wrap",
      "What is drawn beyond the texture's edge.",
      {{"Clamp", "clamp", nullptr}, {"Repeat", "repeat", nullptr}}}},
    {{"s", Type::Enum, "Wrap", "Clamp", "Horizontal wrapping."},
     {"t", Type::Enum, "Wrap", "Clamp", "Vertical wrapping."}}};

const Class andEngine = {
    "AndEngine",
    "Settings of the AndEngine exporter.",
    {{"MinFilter",
      "Filter for a texture that is drawn smaller.",
      {{"Nearest", "nearest", nullptr},
       {"Linear", "linear", nullptr},
       {"LinearMipmapLinear", "linear_mipmap_linear", nullptr},
       {"LinearMipmapNearest", "linear_mipmap_nearest", nullptr},
       {"NearestMipmapLinear", "nearest_mipmap_linear", nullptr},
       {"NearestMipmapNearest", "nearest_mipmap_nearest", nullptr}}},
     {"MagFilter",
      "Filter for a texture that is drawn larger.",
      {{"MagNearest", "nearest", nullptr}, {"MagLinear", "linear", nullptr}}}},
    {{"minFilter", Type::Enum, "MinFilter", "Linear", "Min filter."},
     {"packageName", Type::String, "", "QStringLiteral(\"Texture\")", "Package name of the java definitions."},
     {"javaFileName", Type::FileName, "", "", "File for the java definitions."},
     {"wrap", Type::Object, "AndEngineWrap", "", "Texture wrapping."},
     {"magFilter", Type::Enum, "MagFilter", "MagLinear", "Mag filter."}}};

const Class libGdxFiltering = {
    "LibGDXFiltering",
    "Texture filters in libGDX files.",
    {{"Filtering",
      "The filters of libGDX.",
      {{"Nearest", nullptr, nullptr},
       {"Linear", nullptr, nullptr},
       {"MipMap", nullptr, nullptr},
       {"MipMapNearestNearest", "MipMapNN", nullptr},
       {"MipMapLinearNearest", "MipMapLN", nullptr},
       {"MipMapNearestLinear", "MipMapNL", nullptr},
       {"MipMapLinearLinear", "MipMapLL", nullptr}}}},
    {{"x", Type::Enum, "Filtering", "Linear", "Min filter."},
     {"y", Type::Enum, "Filtering", "Linear", "Mag filter."}}};

const Class libGdx = {"LibGDX",
                      "Settings of the libGDX exporter.",
                      {},
                      {{"filtering", Type::Object, "LibGDXFiltering", "", "Texture filters."}}};

const std::vector<Enum> settingsEnums = {
    {"TextureFormat",
     "Kind of texture file.",
     {{"png", "PNG (.png)", "PNG (32bit)"},
      {"pvr2", "PVR (.pvr, Ver.2)", "PowerVR Texture Format, Format Version 2"},
      {"pvr2gz", "GZip compr. PVR (.pvr.gz, Ver.2)",
       "PowerVR Texture Format, Format Version 2, compressed with gzip"},
      {"pvr2ccz", "zlib compr. PVR (.pvr.ccz, Ver.2)",
       "PowerVR Texture Format, Format Version 2, compressed with zlib, cocos2d header"},
      {"jpg", "JPG (.jpg)", "JPG image format, lossy compression, no transparency"},
      {"bmp", "BMP (.bmp)", "24 bit BMP"},
      {"tga", "TGA (.tga)", "Targa Image Format"},
      {"tiff", "TIFF (.tiff)", "Tagged Image File Format"},
      {"pkm", "PKM with ETC1 (.pkm)", "PKM image format, ETC1 compression"},
      {"ppm_ascii", "Netpbm Ascii (.ppm)", "Netpbm color image format, ascii version"},
      {"ppm_binary", "Netpbm Binary (.ppm)", "Netpbm color image format, binary version"}}},
    {"OutputFormat",
     "Pixel format of the texture.",
     {{"RGBA8888", nullptr, "32bit, 8bit/channel, 8bit transparency"},
      {"BGRA8888", nullptr, "32bit, 8bit/channel, 8bit transparency"},
      {"RGBA4444", nullptr, "16bit, 4bit/channel, 4bit transparency"},
      {"RGB888", nullptr, "24bit, 8bit/channel, no transparency"},
      {"RGB565", nullptr, "16bit, 5bit red, 6bit green, 5bit blue, no transparancy"},
      {"RGBA5551", nullptr, "16bit, 5bit/channel, 1bit transparancy"},
      {"RGBA5555", nullptr, "20bit, 5bit/channel, 5bit transparancy"},
      {"PVRTC2", nullptr, "PVRTC compression, 2bit per pixel, PVR files only"},
      {"PVRTC4", nullptr, "PVRTC compression, 4bit per pixel, PVR files only"},
      {"PVRTC2_NOALPHA", nullptr, "PVRTC compression, 2bit per pixel, PVR files only"},
      {"PVRTC4_NOALPHA", nullptr, "PVRTC compression, 4bit per pixel, PVR files only"},
      {"ALPHA", nullptr, "8bit transparency"},
      {"ALPHA_INTENSITY", nullptr, "8bit intensity, 8bit transparency"},
      {"ETC1", nullptr, "ETC1 compression (PKM file only)"}}},
    {"DitherType",
     "Way of reducing colours.",
     {{"NearestNeighbour", nullptr, nullptr},
      {"Linear", nullptr, nullptr},
      {"FloydSteinberg", nullptr, nullptr},
      {"FloydSteinbergAlpha", nullptr, nullptr},
      {"Atkinson", nullptr, nullptr},
      {"AtkinsonAlpha", nullptr, nullptr}}},
};

const std::vector<Property> settingsProperties = {
    {"fileFormatVersion", Type::Int, "", "0", "Version of the project format; 1 after load and save."},
    {"variation", Type::String, "", "QStringLiteral(\"main\")",
     "Name of the variation; stored and reloaded, no packing step reads it."},
    {"verbose", Type::Bool, "", "false", "Stored and reloaded, no packing step reads it."},
    {"autoSDSettings", Type::ObjectList, "AutoSDSettings", "", "Further resolutions, in order."},
    {"allowRotation", Type::Bool, "", "true", "Sprites may be rotated by 90 degrees during packing."},
    {"quiet", Type::Bool, "", "false", "No output except for errors."},
    {"premultiplyAlpha", Type::Bool, "", "false", "Premultiply colour with alpha when writing the texture."},
    {"shapeDebug", Type::Bool, "", "false", "Draw boxes around the shapes on the sheet."},
    {"dpi", Type::UInt, "", "72", "Resolution stored in the image file, dots per inch."},
    {"allowFreeSize", Type::Bool, "", "false", "Old switch, replaced by sizeConstraints.", Storage::ReadOnly},
    {"dataFormat", Type::String, "", "QStringLiteral(\"cocos2d\")", "Id of the data exporter."},
    {"textureFileName", Type::FileName, "", "", "Name of the texture file to write."},
    {"flipPVR", Type::Bool, "", "false", "Flip PVR files vertically."},
    {"ditherType", Type::Enum, "DitherType", "NearestNeighbour", "Colour reduction mode."},
    {"backgroundColor", Type::UInt, "", "0",
     "Solid background as a QRgb value of alpha 255; 0 means none, transparent."},
    {"libGdx", Type::Object, "LibGDX", "", "Settings of the libGDX exporter."},
    {"shapePadding", Type::UInt, "", "2", "Pixels between sprites."},
    {"jpgQuality", Type::UInt, "", "80",
     "Quality of JPG output, 0..100; -1 as an unsigned number is the writer's default."},
    {"pngOptimizationLevel", Type::UInt, "", "0", "PNG optimiser level, 0 off, up to 7."},
    {"textureSubPath", Type::String, "", "", "Path put before the texture's name in the data file."},
    {"textureFormat", Type::Enum, "TextureFormat", "png", "Kind of texture file."},
    {"borderPadding", Type::UInt, "", "2", "Pixels between sprites and the texture's border."},
    {"maxTextureSize", Type::Size, "", "QSize(2048, 2048)", "Largest texture in auto size mode."},
    {"fixedTextureSize", Type::Size, "", "QSize(-1, -1)",
     "Fixed width and height; a side above 0 is fixed, any other value leaves that side free."},
    {"reduceBorderArtifacts", Type::Bool, "", "false", "Remove dark shadows around sprites."},
    {"algorithmSettings", Type::Object, "AlgorithmSettings", "", "Packing algorithm."},
    {"andEngine", Type::Object, "AndEngine", "", "Settings of the AndEngine exporter."},
    {"dataFileName", Type::FileName, "", "", "Name of the data file to write."},
    {"mainExtension", Type::String, "", "",
     "Part of the file name that is replaced by a variant's extension.", Storage::Stored, "defaultExtension"},
    {"forceIdenticalLayout", Type::Bool, "", "false", "Keep the layout across the resolutions."},
    {"outputFormat", Type::Enum, "OutputFormat", "RGBA8888", "Pixel format of the texture."},
    {"autoAliasEnabled", Type::Bool, "", "true", "Identical sprites become aliases."},
    {"trimSpriteNames", Type::Bool, "", "false", "Remove the image suffix from sprite names."},
    {"globalSpriteSettings", Type::Object, "SpriteSettings", "", "Settings that apply to all sprites."},
    {"fileList", Type::FileNameList, "", "", "Files, folders and smart folders of the project."},
    {"ignoreFileList", Type::StringList, "", "", "Patterns of files that are left out."},
    {"replaceList", Type::StringList, "", "", "Rules <regexp>=<string> that rename sprites."},
    {"commonDivisorX", Type::UInt, "", "1", "Sprite widths are made divisible by this value."},
    {"commonDivisorY", Type::UInt, "", "1", "Sprite heights are made divisible by this value."},
};

} // namespace

const std::vector<Class>& classes() {
    static const std::vector<Class> table = {
        spriteSettings,
        maxRectsSettings,
        basicSettings,
        algorithmSettings,
        autoSDSettings,
        andEngineWrap,
        andEngine,
        libGdxFiltering,
        libGdx,
        {"SettingsBase", "Every value that steers a packing run.", settingsEnums, settingsProperties},
    };
    return table;
}

} // namespace meta
