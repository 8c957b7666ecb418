#include <glib-object.h>

#include <string>

#include "benchmarks/objects_sides.h"

namespace lyrsdk::bench {

namespace {

// A class with 64 properties, and its object.
struct Instance {
    GObject parent;
    double doubles[kPropertyCount];
    double vectors[kPropertyCount][3];
    int ints[kPropertyCount];
    float floats[kPropertyCount];
    char* texts[kPropertyCount];
};

struct Class {
    GObjectClass parent;
};

Instance* Self(GObject* pObject) {
    return reinterpret_cast<Instance*>(pObject);
}

void GetProperty(GObject* pObject, guint pId, GValue* pValue, GParamSpec*) {
    const int lIndex = static_cast<int>(pId) - 1;
    switch (KindOf(lIndex)) {
        case Kind::eDouble:
            g_value_set_double(pValue, Self(pObject)->doubles[lIndex]);
            break;
        case Kind::eInt:
            g_value_set_int(pValue, Self(pObject)->ints[lIndex]);
            break;
        case Kind::eBool:
            g_value_set_boolean(pValue, Self(pObject)->ints[lIndex]);
            break;
        case Kind::eVector:
            g_value_set_pointer(pValue, Self(pObject)->vectors[lIndex]);
            break;
        case Kind::eText:
            g_value_set_string(pValue, Self(pObject)->texts[lIndex]);
            break;
        case Kind::eFloat:
            g_value_set_float(pValue, Self(pObject)->floats[lIndex]);
            break;
    }
}

void SetProperty(GObject* pObject, guint pId, const GValue* pValue, GParamSpec*) {
    const int lIndex = static_cast<int>(pId) - 1;
    switch (KindOf(lIndex)) {
        case Kind::eDouble:
            Self(pObject)->doubles[lIndex] = g_value_get_double(pValue);
            break;
        case Kind::eInt:
            Self(pObject)->ints[lIndex] = g_value_get_int(pValue);
            break;
        case Kind::eBool:
            Self(pObject)->ints[lIndex] = g_value_get_boolean(pValue);
            break;
        case Kind::eVector:
            for (int i = 0; i < 3; ++i)
                Self(pObject)->vectors[lIndex][i] = static_cast<double*>(g_value_get_pointer(pValue))[i];
            break;
        case Kind::eText:
            g_free(Self(pObject)->texts[lIndex]);
            Self(pObject)->texts[lIndex] = g_value_dup_string(pValue);
            break;
        case Kind::eFloat:
            Self(pObject)->floats[lIndex] = g_value_get_float(pValue);
            break;
    }
}

GParamSpec* Describe(int pIndex) {
    const char* lName = PropertyName(pIndex);
    const auto lFlags = static_cast<GParamFlags>(G_PARAM_READWRITE);
    switch (KindOf(pIndex)) {
        case Kind::eDouble:
            return g_param_spec_double(lName, lName, lName, -1e9, 1e9, 0, lFlags);
        case Kind::eInt:
            return g_param_spec_int(lName, lName, lName, G_MININT, G_MAXINT, 0, lFlags);
        case Kind::eBool:
            return g_param_spec_boolean(lName, lName, lName, 0, lFlags);
        case Kind::eVector:
            return g_param_spec_pointer(lName, lName, lName, lFlags);
        case Kind::eText:
            return g_param_spec_string(lName, lName, lName, "", lFlags);
        case Kind::eFloat:
            return g_param_spec_float(lName, lName, lName, -1e9F, 1e9F, 0, lFlags);
    }
    return nullptr;
}

void Finalize(GObject* pObject) {
    for (char* lText : Self(pObject)->texts)
        g_free(lText);
    static_cast<GObjectClass*>(g_type_class_peek(G_TYPE_OBJECT))->finalize(pObject);
}

void InitClass(void* pClass, void*) {
    auto* lClass = static_cast<GObjectClass*>(pClass);
    lClass->get_property = &GetProperty;
    lClass->set_property = &SetProperty;
    lClass->finalize = &Finalize;
    for (int i = 0; i < kPropertyCount; ++i)
        g_object_class_install_property(lClass, static_cast<guint>(i) + 1, Describe(i));
}

GType InstanceType() {
    static const GType sType = g_type_register_static_simple(G_TYPE_OBJECT, "LyrBenchObject", sizeof(Class), &InitClass,
                                                             sizeof(Instance), nullptr, G_TYPE_FLAG_NONE);
    return sType;
}

// A value of the kind of a property, cleared at the end.
class Value {
public:
    explicit Value(GType pType) { g_value_init(&mValue, pType); }
    Value(int pIndex, bool pValues) {
        static double sVectors[2][3] = {{0, 0, 0}, {1, 2, 3}};
        switch (KindOf(pIndex)) {
            case Kind::eDouble:
                g_value_init(&mValue, G_TYPE_DOUBLE);
                g_value_set_double(&mValue, pValues ? DoubleValue(pIndex) : 0);
                break;
            case Kind::eInt:
                g_value_init(&mValue, G_TYPE_INT);
                g_value_set_int(&mValue, pValues ? pIndex : 0);
                break;
            case Kind::eBool:
                g_value_init(&mValue, G_TYPE_BOOLEAN);
                g_value_set_boolean(&mValue, pValues);
                break;
            case Kind::eVector:
                g_value_init(&mValue, G_TYPE_POINTER);
                g_value_set_pointer(&mValue, sVectors[pValues]);
                break;
            case Kind::eText:
                g_value_init(&mValue, G_TYPE_STRING);
                g_value_set_string(&mValue, pValues ? kTextValue : "");
                break;
            case Kind::eFloat:
                g_value_init(&mValue, G_TYPE_FLOAT);
                g_value_set_float(&mValue, pValues ? 0.5F : 0);
                break;
        }
    }
    ~Value() { g_value_unset(&mValue); }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    GValue* operator&() { return &mValue; }

private:
    GValue mValue = G_VALUE_INIT;
};

// The properties of a class, by name and with the class and the description at hand.
class ClassProperties {
public:
    static constexpr char kName[] = "GObject";

    explicit ClassProperties(bool pValues) : mObject(static_cast<GObject*>(g_object_new(InstanceType(), nullptr))) {
        for (int i = 0; pValues && i < kPropertyCount; ++i) {
            Value lValue(i, true);
            g_object_set_property(mObject, PropertyName(i), &lValue);
        }
    }
    ~ClassProperties() { g_object_unref(mObject); }
    ClassProperties(const ClassProperties&) = delete;
    ClassProperties& operator=(const ClassProperties&) = delete;

    double GetByName(const char* pName) const {
        Value lValue(G_TYPE_DOUBLE);
        g_object_get_property(mObject, pName, &lValue);
        return g_value_get_double(&lValue);
    }
    void Resolve() {
        mClass = G_OBJECT_GET_CLASS(mObject);
        for (int i = 0; i < kDoubleCount; ++i)
            mDoubles[i] = g_object_class_find_property(mClass, PropertyName(DoubleIndex(i)));
    }
    double Get(int pNumber) const {
        Value lValue(G_TYPE_DOUBLE);
        mClass->get_property(mObject, static_cast<guint>(DoubleIndex(pNumber)) + 1, &lValue, mDoubles[pNumber]);
        return g_value_get_double(&lValue);
    }
    void Set(int pNumber, double pValue) {
        Value lValue(G_TYPE_DOUBLE);
        g_value_set_double(&lValue, pValue);
        mClass->set_property(mObject, static_cast<guint>(DoubleIndex(pNumber)) + 1, &lValue, mDoubles[pNumber]);
    }
    void SetChecked(int pNumber, double pValue) {
        if (Get(pNumber) != pValue)
            Set(pNumber, pValue);
    }

private:
    GObject* mObject;
    GObjectClass* mClass = nullptr;
    GParamSpec* mDoubles[kDoubleCount] = {};
};

// Properties that belong to one object: values in a hash table.
class TableProperties {
public:
    static constexpr char kName[] = "GObject hash table";

    explicit TableProperties(bool pValues)
        : mObject(static_cast<GObject*>(g_object_new(G_TYPE_OBJECT, nullptr))),
          mTable(g_hash_table_new_full(&g_str_hash, &g_str_equal, &g_free, &FreeValue)) {
        for (int i = 0; i < kPropertyCount; ++i) {
            Value lValue(i, pValues);
            GValue* lStored = g_new0(GValue, 1);
            g_value_init(lStored, G_VALUE_TYPE(&lValue));
            g_value_copy(&lValue, lStored);
            g_hash_table_insert(mTable, g_strdup(PropertyName(i)), lStored);
        }
    }
    ~TableProperties() {
        g_hash_table_unref(mTable);
        g_object_unref(mObject);
    }
    TableProperties(const TableProperties&) = delete;
    TableProperties& operator=(const TableProperties&) = delete;

    double GetByName(const char* pName) const {
        return g_value_get_double(static_cast<const GValue*>(g_hash_table_lookup(mTable, pName)));
    }

private:
    static void FreeValue(void* pValue) {
        g_value_unset(static_cast<GValue*>(pValue));
        g_free(pValue);
    }

    GObject* mObject;
    GHashTable* mTable;
};

const Registration sgRegistration([] {
    AddNameSides<ClassProperties>();
    AddHandleSides<ClassProperties>();
    AddObjectSides<ClassProperties>();
    AddCreateSides<TableProperties>();
    AddNameSides<TableProperties>();
});

}  // namespace

}  // namespace lyrsdk::bench
