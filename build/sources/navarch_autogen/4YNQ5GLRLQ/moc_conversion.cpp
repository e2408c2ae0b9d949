/****************************************************************************
** Meta object code from reading C++ file 'conversion.h'
**
** Created by: The Qt Meta Object Compiler version 67 (Qt 5.15.8)
**
** WARNING! All changes made in this file will be lost!
*****************************************************************************/

#include <memory>
#include "../../../../sources/commands/conversion.h"
#include <QtCore/qbytearray.h>
#include <QtCore/qmetatype.h>
#if !defined(Q_MOC_OUTPUT_REVISION)
#error "The header file 'conversion.h' doesn't include <QObject>."
#elif Q_MOC_OUTPUT_REVISION != 67
#error "This file was generated using the moc from 5.15.8. It"
#error "cannot be used with the include files from this version of Qt."
#error "(The moc has changed too much.)"
#endif

QT_BEGIN_MOC_NAMESPACE
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
struct qt_meta_stringdata_Conversion_t {
    QByteArrayData data[19];
    char stringdata0[284];
};
#define QT_MOC_LITERAL(idx, ofs, len) \
    Q_STATIC_BYTE_ARRAY_DATA_HEADER_INITIALIZER_WITH_OFFSET(len, \
    qptrdiff(offsetof(qt_meta_stringdata_Conversion_t, stringdata0) + ofs \
        - idx * sizeof(QByteArrayData)) \
    )
static const qt_meta_stringdata_Conversion_t qt_meta_stringdata_Conversion = {
    {
QT_MOC_LITERAL(0, 0, 10), // "Conversion"
QT_MOC_LITERAL(1, 11, 19), // "showTerminateDialog"
QT_MOC_LITERAL(2, 31, 0), // ""
QT_MOC_LITERAL(3, 32, 21), // "standardOutputChanged"
QT_MOC_LITERAL(4, 54, 13), // "errorsChanged"
QT_MOC_LITERAL(5, 68, 9), // "terminate"
QT_MOC_LITERAL(6, 78, 18), // "readStandardOutput"
QT_MOC_LITERAL(7, 97, 19), // "setSourceConversion"
QT_MOC_LITERAL(8, 117, 16), // "sourceConversion"
QT_MOC_LITERAL(9, 134, 19), // "setTargetConversion"
QT_MOC_LITERAL(10, 154, 16), // "targetConversion"
QT_MOC_LITERAL(11, 171, 25), // "setSourceConversionOption"
QT_MOC_LITERAL(12, 197, 8), // "database"
QT_MOC_LITERAL(13, 206, 3), // "api"
QT_MOC_LITERAL(14, 210, 25), // "setTargetConversionOption"
QT_MOC_LITERAL(15, 236, 7), // "setFile"
QT_MOC_LITERAL(16, 244, 16), // "absolutePathFile"
QT_MOC_LITERAL(17, 261, 12), // "setOutputDir"
QT_MOC_LITERAL(18, 274, 9) // "outputDir"

    },
    "Conversion\0showTerminateDialog\0\0"
    "standardOutputChanged\0errorsChanged\0"
    "terminate\0readStandardOutput\0"
    "setSourceConversion\0sourceConversion\0"
    "setTargetConversion\0targetConversion\0"
    "setSourceConversionOption\0database\0"
    "api\0setTargetConversionOption\0setFile\0"
    "absolutePathFile\0setOutputDir\0outputDir"
};
#undef QT_MOC_LITERAL

static const uint qt_meta_data_Conversion[] = {

 // content:
       8,       // revision
       0,       // classname
       0,    0, // classinfo
      11,   14, // methods
       0,    0, // properties
       0,    0, // enums/sets
       0,    0, // constructors
       0,       // flags
       3,       // signalCount

 // signals: name, argc, parameters, tag, flags
       1,    0,   69,    2, 0x06 /* Public */,
       3,    0,   70,    2, 0x06 /* Public */,
       4,    0,   71,    2, 0x06 /* Public */,

 // slots: name, argc, parameters, tag, flags
       5,    0,   72,    2, 0x0a /* Public */,
       6,    0,   73,    2, 0x0a /* Public */,
       7,    1,   74,    2, 0x0a /* Public */,
       9,    1,   77,    2, 0x0a /* Public */,
      11,    2,   80,    2, 0x0a /* Public */,
      14,    2,   85,    2, 0x0a /* Public */,
      15,    1,   90,    2, 0x0a /* Public */,
      17,    1,   93,    2, 0x0a /* Public */,

 // signals: parameters
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,

 // slots: parameters
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void, QMetaType::QString,    8,
    QMetaType::Void, QMetaType::QString,   10,
    QMetaType::Void, QMetaType::QString, QMetaType::QString,   12,   13,
    QMetaType::Void, QMetaType::QString, QMetaType::QString,   12,   13,
    QMetaType::Void, QMetaType::QStringList,   16,
    QMetaType::Void, QMetaType::QString,   18,

       0        // eod
};

void Conversion::qt_static_metacall(QObject *_o, QMetaObject::Call _c, int _id, void **_a)
{
    if (_c == QMetaObject::InvokeMetaMethod) {
        auto *_t = static_cast<Conversion *>(_o);
        (void)_t;
        switch (_id) {
        case 0: _t->showTerminateDialog(); break;
        case 1: _t->standardOutputChanged(); break;
        case 2: _t->errorsChanged(); break;
        case 3: _t->terminate(); break;
        case 4: _t->readStandardOutput(); break;
        case 5: _t->setSourceConversion((*reinterpret_cast< QString(*)>(_a[1]))); break;
        case 6: _t->setTargetConversion((*reinterpret_cast< QString(*)>(_a[1]))); break;
        case 7: _t->setSourceConversionOption((*reinterpret_cast< QString(*)>(_a[1])),(*reinterpret_cast< QString(*)>(_a[2]))); break;
        case 8: _t->setTargetConversionOption((*reinterpret_cast< QString(*)>(_a[1])),(*reinterpret_cast< QString(*)>(_a[2]))); break;
        case 9: _t->setFile((*reinterpret_cast< QStringList(*)>(_a[1]))); break;
        case 10: _t->setOutputDir((*reinterpret_cast< QString(*)>(_a[1]))); break;
        default: ;
        }
    } else if (_c == QMetaObject::IndexOfMethod) {
        int *result = reinterpret_cast<int *>(_a[0]);
        {
            using _t = void (Conversion::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Conversion::showTerminateDialog)) {
                *result = 0;
                return;
            }
        }
        {
            using _t = void (Conversion::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Conversion::standardOutputChanged)) {
                *result = 1;
                return;
            }
        }
        {
            using _t = void (Conversion::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Conversion::errorsChanged)) {
                *result = 2;
                return;
            }
        }
    }
}

QT_INIT_METAOBJECT const QMetaObject Conversion::staticMetaObject = { {
    QMetaObject::SuperData::link<QProcess::staticMetaObject>(),
    qt_meta_stringdata_Conversion.data,
    qt_meta_data_Conversion,
    qt_static_metacall,
    nullptr,
    nullptr
} };


const QMetaObject *Conversion::metaObject() const
{
    return QObject::d_ptr->metaObject ? QObject::d_ptr->dynamicMetaObject() : &staticMetaObject;
}

void *Conversion::qt_metacast(const char *_clname)
{
    if (!_clname) return nullptr;
    if (!strcmp(_clname, qt_meta_stringdata_Conversion.stringdata0))
        return static_cast<void*>(this);
    if (!strcmp(_clname, "Command"))
        return static_cast< Command*>(this);
    return QProcess::qt_metacast(_clname);
}

int Conversion::qt_metacall(QMetaObject::Call _c, int _id, void **_a)
{
    _id = QProcess::qt_metacall(_c, _id, _a);
    if (_id < 0)
        return _id;
    if (_c == QMetaObject::InvokeMetaMethod) {
        if (_id < 11)
            qt_static_metacall(this, _c, _id, _a);
        _id -= 11;
    } else if (_c == QMetaObject::RegisterMethodArgumentMetaType) {
        if (_id < 11)
            *reinterpret_cast<int*>(_a[0]) = -1;
        _id -= 11;
    }
    return _id;
}

// SIGNAL 0
void Conversion::showTerminateDialog()
{
    QMetaObject::activate(this, &staticMetaObject, 0, nullptr);
}

// SIGNAL 1
void Conversion::standardOutputChanged()
{
    QMetaObject::activate(this, &staticMetaObject, 1, nullptr);
}

// SIGNAL 2
void Conversion::errorsChanged()
{
    QMetaObject::activate(this, &staticMetaObject, 2, nullptr);
}
QT_WARNING_POP
QT_END_MOC_NAMESPACE
