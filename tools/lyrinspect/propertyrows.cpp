#include "tools/lyrinspect/propertyrows.h"

namespace lyrsdk::inspect {

namespace {

using Flags = LyrPropertyFlags;

constexpr Flags::eLyrPropertyFlags kPlain = Flags::eNO_FLAG;
constexpr Flags::eLyrPropertyFlags kAnim = Flags::eANIMATABLE;
constexpr Flags::eLyrPropertyFlags kGroup = Flags::eUI_GROUP;
constexpr Flags::eLyrPropertyFlags kOpen = Flags::eUI_GROUP | Flags::eUI_EXPANDED;
// What the inspector computes is shown, cannot be edited and need not be saved.
constexpr Flags::eLyrPropertyFlags kComputed = Flags::eUI_DISABLED | Flags::eNOT_SAVABLE;

constexpr bool kStated = false;
constexpr bool kDerived = true;

// clang-format off

// ---- compound types -------------------------------------------------------------------------------------------------

// A node states either the first three or the matrix. Angles are a unit quaternion x, y, z, w.
constexpr PropertyRow kTransform[] = {
//   path           label           type       value                              limits   soft  choices flags
    {"translation", "Translation",  "double3",  "0,0,0",                           "",      "",   "",     kAnim,  kStated},
    {"rotation",    "Rotation",     "double4",  "0,0,0,1",                         "-1..1", "",   "",     kAnim,  kStated},
    {"scale",       "Scale",        "double3",  "1,1,1",                           "",      "",   "",     kAnim,  kStated},
    {"matrix",      "Local matrix", "double44", "1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1", "",      "",   "",     kPlain, kStated},
};

// Angles in radians.
constexpr PropertyRow kTextureTransform[] = {
    {"offset",      "Offset",       "double2",  "0,0",     "",    "-1..1",                                "", kPlain, kStated},
    {"rotation",    "Rotation",     "double",   "0",       "",    "-3.141592653589793..3.141592653589793","", kPlain, kStated},
    {"scale",       "Scale",        "double2",  "1,1",     "",    "0..10",                                "", kPlain, kStated},
};

constexpr PropertyRow kTextureInfo[] = {
    {"index",       "Texture",           "reference",        "",  "",    "", "texture", kPlain, kStated},
    {"texCoord",    "Texture coordinates", "int",            "0", "0..", "", "",        kPlain, kStated},
    {"transform",   "Texture transform", "TextureTransform", "",  "",    "", "",        kGroup, kDerived},
};

constexpr PropertyRow kNormalTextureInfo[] = {
    {"scale",       "Normal scale",       "double", "1", "",     "0..10", "", kPlain, kStated},
};

constexpr PropertyRow kOcclusionTextureInfo[] = {
    {"strength",    "Occlusion strength", "double", "1", "0..1", "",      "", kPlain, kStated},
};

// ---- object kinds ---------------------------------------------------------------------------------------------------

constexpr PropertyRow kDocument[] = {
    {"asset",              "Asset",               "group",     "", "", "", "",      kOpen,  kStated},
    {"asset/version",      "glTF version",        "string",    "", "", "", "",      kPlain, kStated},
    {"asset/minVersion",   "Lowest glTF version", "string",    "", "", "", "",      kPlain, kStated},
    {"asset/generator",    "Generator",           "string",    "", "", "", "",      kPlain, kStated},
    {"asset/copyright",    "Copyright",           "string",    "", "", "", "",      kPlain, kStated},
    {"scene",              "Default scene",       "reference", "", "", "", "scene", kPlain, kStated},
    {"extensionsUsed",     "Extensions used",     "group",     "", "", "", "*[string", kGroup, kStated},
    {"extensionsRequired", "Extensions required", "group",     "", "", "", "*[string", kGroup, kStated},
};

constexpr PropertyRow kScene[] = {
    {"name",               "Name",                "string",    "", "", "", "",      kPlain, kStated},
    {"nodes",              "Root nodes",          "reference", "", "", "", "node*", kPlain, kStated},
};

constexpr PropertyRow kNode[] = {
    {"name",               "Name",                "string",    "", "", "", "",       kPlain, kStated},
    {"transform",          "Transform",           "Transform", "", "", "", "",       kOpen,  kDerived},
    {"parent",             "Parent",              "reference", "", "", "", "",       kPlain, kDerived},
    {"children",           "Children",            "reference", "", "", "", "node*",  kPlain, kStated},
    {"mesh",               "Mesh",                "reference", "", "", "", "mesh",   kPlain, kStated},
    {"camera",             "Camera",              "reference", "", "", "", "camera", kPlain, kStated},
    {"light",              "Light",               "reference", "", "", "", "light",  kPlain, kDerived},
    {"skin",               "Skin",                "reference", "", "", "", "skin",   kPlain, kStated},
    {"weights",            "Morph weights",       "group",     "", "", "", "*[double", kGroup | kAnim, kStated},
};

constexpr PropertyRow kMesh[] = {
    {"name",               "Name",                "string",    "", "", "", "",       kPlain, kStated},
    {"primitives",         "Primitives",          "reference", "", "", "", "",       kPlain, kDerived},
    {"weights",            "Morph weights",       "group",     "", "", "", "*[double", kGroup | kAnim, kStated},
};

// indices and attributes hold accessor numbers.
constexpr PropertyRow kPrimitive[] = {
    {"mesh",               "Mesh",                "reference", "",          "",     "",  "",         kPlain,    kDerived},
    {"mode",               "Mode",                "enum",      "TRIANGLES", "",     "",
        "POINTS=0|LINES=1|LINE_LOOP=2|LINE_STRIP=3|TRIANGLES=4|TRIANGLE_STRIP=5|TRIANGLE_FAN=6",     kPlain,    kStated},
    {"material",           "Material",            "reference", "",          "",     "",  "material", kPlain,    kStated},
    {"indices",            "Index accessor",      "int",       "-1",        "-1..", "",  "",         kPlain,    kStated},
    {"attributes",         "Attributes",          "group",     "",          "",     "",  "*{",       kGroup,    kStated},
    {"targets",            "Morph targets",       "group",     "",          "",     "",  "*[{",      kGroup,    kStated},
    {"vertexCount",        "Vertices",            "int",       "0",         "0..",  "",  "",         kComputed, kDerived},
    {"indexCount",         "Indices",             "int",       "0",         "0..",  "",  "",         kComputed, kDerived},
    {"boundsMin",          "Lower corner",        "double3",   "0,0,0",     "",     "",  "",         kComputed, kDerived},
    {"boundsMax",          "Upper corner",        "double3",   "0,0,0",     "",     "",  "",         kComputed, kDerived},
};

constexpr PropertyRow kMaterial[] = {
    {"name",                                          "Name",               "string",      "",        "",     "",     "", kPlain, kStated},
    {"pbrMetallicRoughness",                          "Metallic roughness", "group",       "",        "",     "",     "", kOpen,  kStated},
    {"pbrMetallicRoughness/baseColorFactor",          "Base colour",        "double4",     "1,1,1,1", "0..1", "",     "", kPlain, kStated},
    {"pbrMetallicRoughness/baseColorTexture",         "Base colour map",    "TextureInfo", "",        "",     "",     "", kGroup, kStated},
    {"pbrMetallicRoughness/metallicFactor",           "Metalness",          "double",      "1",       "0..1", "",     "", kPlain, kStated},
    {"pbrMetallicRoughness/roughnessFactor",          "Roughness",          "double",      "1",       "0..1", "",     "", kPlain, kStated},
    {"pbrMetallicRoughness/metallicRoughnessTexture", "Metallic roughness map", "TextureInfo", "",    "",     "",     "", kGroup, kStated},
    {"normalTexture",                                 "Normal map",         "NormalTextureInfo", "",  "",     "",     "", kGroup, kStated},
    {"occlusionTexture",                              "Occlusion map",      "OcclusionTextureInfo","","",     "",     "", kGroup, kStated},
    {"emissiveTexture",                               "Emissive map",       "TextureInfo", "",        "",     "",     "", kGroup, kStated},
    {"emissiveFactor",                                "Emissive colour",    "double3",     "0,0,0",   "0..1", "",     "", kPlain, kStated},
    {"alphaMode",                                     "Alpha mode",         "enum",        "OPAQUE",  "",     "", "OPAQUE|MASK|BLEND", kPlain, kStated},
    {"alphaCutoff",                                   "Alpha cutoff",       "double",      "0.5",     "0..",  "0..1", "", kPlain, kStated},
    {"doubleSided",                                   "Double sided",       "bool",        "false",   "",     "",     "", kPlain, kStated},
};

constexpr PropertyRow kTexture[] = {
    {"name",       "Name",         "string",    "", "", "", "",        kPlain, kStated},
    {"sampler",    "Sampler",      "reference", "", "", "", "sampler", kPlain, kStated},
    {"source",     "Image",        "reference", "", "", "", "image",   kPlain, kStated},
};

// data holds the bytes of an image inside the file when they are few.
constexpr PropertyRow kImage[] = {
    {"name",       "Name",         "string",    "",   "",     "", "",  kPlain,    kStated},
    {"uri",        "Address",      "string",    "",   "",     "", "",  kPlain,    kStated},
    {"mimeType",   "Media type",   "string",    "",   "",     "", "",  kPlain,    kStated},
    {"bufferView", "Buffer view",  "int",       "-1", "-1..", "", "",  kPlain,    kStated},
    {"data",       "Data",         "blob",      "",   "",     "", "",  kComputed, kDerived},
};

// The format leaves unstated filters to the viewer.
constexpr PropertyRow kSampler[] = {
    {"name",       "Name",               "string", "",           "", "", "",                                kPlain, kStated},
    {"magFilter",  "Magnifying filter",  "enum",   "UNSTATED",   "", "", "UNSTATED|NEAREST=9728|LINEAR=9729", kPlain, kStated},
    {"minFilter",  "Minifying filter",   "enum",   "UNSTATED",   "", "",
        "UNSTATED|NEAREST=9728|LINEAR=9729|NEAREST_MIPMAP_NEAREST=9984|LINEAR_MIPMAP_NEAREST=9985|"
        "NEAREST_MIPMAP_LINEAR=9986|LINEAR_MIPMAP_LINEAR=9987",                                             kPlain, kStated},
    {"wrapS",      "Wrapping along s",   "enum",   "REPEAT",     "", "", "CLAMP_TO_EDGE=33071|MIRRORED_REPEAT=33648|REPEAT=10497", kPlain, kStated},
    {"wrapT",      "Wrapping along t",   "enum",   "REPEAT",     "", "", "CLAMP_TO_EDGE=33071|MIRRORED_REPEAT=33648|REPEAT=10497", kPlain, kStated},
};

// Distances in metres, angles in radians. An aspect ratio of 0 is that of the viewport; a far plane may be infinite.
constexpr PropertyRow kCamera[] = {
    {"name",                    "Name",            "string",   "",            "",   "",                        "", kPlain, kStated},
    {"type",                    "Projection",      "enum",     "perspective", "",   "", "perspective|orthographic", kPlain, kStated},
    {"perspective",             "Perspective",     "group",    "",            "",   "",                        "", kGroup, kStated},
    {"perspective/aspectRatio", "Aspect ratio",    "double",   "0",           ">0..", "0..4",                  "", kPlain, kStated},
    {"perspective/yfov",        "Vertical field of view", "double", "0",      ">0..", "0..3.141592653589793",   "", kPlain, kStated},
    {"perspective/znear",       "Near plane",      "distance", "0",           ">0..", "",                       "", kPlain, kStated},
    {"perspective/zfar",        "Far plane",       "distance", "inf",         ">0..", "",                       "", kPlain, kStated},
    {"orthographic",            "Orthographic",    "group",    "",            "",   "",                        "", kGroup, kStated},
    {"orthographic/xmag",       "Half width",      "double",   "0",           "",   "",                        "", kPlain, kStated},
    {"orthographic/ymag",       "Half height",     "double",   "0",           "",   "",                        "", kPlain, kStated},
    {"orthographic/znear",      "Near plane",      "distance", "0",           "0..", "",                       "", kPlain, kStated},
    {"orthographic/zfar",       "Far plane",       "distance", "0",           ">0..", "",                       "", kPlain, kStated},
};

// Intensity in candela for point and spot lights, in lux for directional ones.
constexpr PropertyRow kLight[] = {
    {"name",                    "Name",        "string",   "",            "",     "",      "", kPlain, kStated},
    {"type",                    "Type",        "enum",     "directional", "",     "", "directional|point|spot", kPlain, kStated},
    {"color",                   "Colour",      "double3",  "1,1,1",       "0..1", "",      "", kPlain, kStated},
    {"intensity",               "Intensity",   "double",   "1",           "0..",  "0..1000", "", kPlain, kStated},
    {"range",                   "Range",       "distance", "inf",         ">0..", "",      "", kPlain, kStated},
    {"spot",                    "Spot cone",   "group",    "",            "",     "",      "", kGroup, kStated},
    {"spot/innerConeAngle",     "Inner angle", "double",   "0",                  "0..<1.5707963267948966", "", "", kPlain, kStated},
    {"spot/outerConeAngle",     "Outer angle", "double",   "0.7853981633974483", ">0..1.5707963267948966", "", "", kPlain, kStated},
};

// inverseBindMatrices holds the bytes of the matrices when they are few.
constexpr PropertyRow kSkin[] = {
    {"name",                "Name",                  "string",    "",   "",    "", "",     kPlain,    kStated},
    {"skeleton",            "Skeleton root",         "reference", "",   "",    "", "node", kPlain,    kStated},
    {"joints",              "Joints",                "reference", "",   "",    "", "node*", kPlain,   kStated},
    {"jointCount",          "Number of joints",      "int",       "0",  "0..", "", "",     kComputed, kDerived},
    {"inverseBindMatrices", "Inverse bind matrices", "blob",      "",   "",    "", "",     kComputed, kDerived},
};

constexpr PropertyRow kAnimation[] = {
    {"name",      "Name",     "string",    "",  "", "", "", kPlain,    kStated},
    {"channels",  "Channels", "reference", "",  "", "", "", kPlain,    kDerived},
    {"start",     "Start",    "time",      "0", "", "", "", kComputed, kDerived},
    {"end",       "End",      "time",      "0", "", "", "", kComputed, kDerived},
    {"duration",  "Duration", "time",      "0", "", "", "", kComputed, kDerived},
};

// sampler/input and sampler/output hold accessor numbers, keyTimes and keyValues the bytes behind them when they are
// few. value feeds the animated property.
constexpr PropertyRow kChannel[] = {
    {"animation",             "Animation",       "reference", "",   "",     "", "",     kPlain, kDerived},
    {"target",                "Target",          "group",     "",   "",     "", "",     kOpen,  kStated},
    {"target/node",           "Node",            "reference", "",   "",     "", "node", kPlain, kStated},
    {"target/path",           "Property",        "enum",      "translation", "", "", "translation|rotation|scale|weights", kPlain, kStated},
    {"sampler",               "Sampler",         "group",     "",   "",     "", "",     kGroup, kDerived},
    {"sampler/input",         "Times accessor",  "int",       "-1", "-1..", "", "",     kPlain, kStated},
    {"sampler/output",        "Values accessor", "int",       "-1", "-1..", "", "",     kPlain, kStated},
    {"sampler/interpolation", "Interpolation",   "enum",      "LINEAR", "", "", "LINEAR|STEP|CUBICSPLINE", kPlain, kStated},
    {"value",                 "Value",           "reference", "",   "",     "", "",     kComputed, kDerived},
    {"keyCount",              "Keys",            "int",       "0",  "0..",  "", "",     kComputed, kDerived},
    {"start",                 "Start",           "time",      "0",  "",     "", "",     kComputed, kDerived},
    {"end",                   "End",             "time",      "0",  "",     "", "",     kComputed, kDerived},
    {"keyTimes",              "Key times",       "blob",      "",   "",     "", "",     kComputed, kDerived},
    {"keyValues",             "Key values",      "blob",      "",   "",     "", "",     kComputed, kDerived},
};

// clang-format on

template <std::size_t N>
constexpr PropertyTable TableOf(const PropertyRow (&pRows)[N]) {
    return {pRows, N};
}

// In the order of ObjectKind.
constexpr PropertyTable kKindTables[] = {
    TableOf(kDocument), TableOf(kScene),   TableOf(kNode),      TableOf(kMesh),    TableOf(kPrimitive),
    TableOf(kMaterial), TableOf(kTexture), TableOf(kImage),     TableOf(kSampler), TableOf(kCamera),
    TableOf(kLight),    TableOf(kSkin),    TableOf(kAnimation), TableOf(kChannel),
};
static_assert(sizeof kKindTables / sizeof kKindTables[0] == kKindCount, "one table a kind");

constexpr CompoundType kCompoundTypes[] = {
    {"Transform", nullptr, TableOf(kTransform)},
    {"TextureTransform", nullptr, TableOf(kTextureTransform)},
    {"TextureInfo", nullptr, TableOf(kTextureInfo)},
    {"NormalTextureInfo", "TextureInfo", TableOf(kNormalTextureInfo)},
    {"OcclusionTextureInfo", "TextureInfo", TableOf(kOcclusionTextureInfo)},
};

}  // namespace

PropertyTable RowsOfKind(ObjectKind pKind) {
    const std::size_t lIndex = static_cast<std::size_t>(pKind);
    return lIndex < kKindCount ? kKindTables[lIndex] : PropertyTable{nullptr, 0};
}

CompoundTypes AllCompoundTypes() {
    return {kCompoundTypes, sizeof kCompoundTypes / sizeof kCompoundTypes[0]};
}

}  // namespace lyrsdk::inspect
