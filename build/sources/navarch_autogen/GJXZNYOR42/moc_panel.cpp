/****************************************************************************
** Meta object code from reading C++ file 'panel.h'
**
** Created by: The Qt Meta Object Compiler version 67 (Qt 5.15.8)
**
** WARNING! All changes made in this file will be lost!
*****************************************************************************/

#include <memory>
#include "../../../../sources/panelactions/panel.h"
#include <QtCore/qbytearray.h>
#include <QtCore/qmetatype.h>
#if !defined(Q_MOC_OUTPUT_REVISION)
#error "The header file 'panel.h' doesn't include <QObject>."
#elif Q_MOC_OUTPUT_REVISION != 67
#error "This file was generated using the moc from 5.15.8. It"
#error "cannot be used with the include files from this version of Qt."
#error "(The moc has changed too much.)"
#endif

QT_BEGIN_MOC_NAMESPACE
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
struct qt_meta_stringdata_Panel_t {
    QByteArrayData data[47];
    char stringdata0[628];
};
#define QT_MOC_LITERAL(idx, ofs, len) \
    Q_STATIC_BYTE_ARRAY_DATA_HEADER_INITIALIZER_WITH_OFFSET(len, \
    qptrdiff(offsetof(qt_meta_stringdata_Panel_t, stringdata0) + ofs \
        - idx * sizeof(QByteArrayData)) \
    )
static const qt_meta_stringdata_Panel_t qt_meta_stringdata_Panel = {
    {
QT_MOC_LITERAL(0, 0, 5), // "Panel"
QT_MOC_LITERAL(1, 6, 18), // "changeAbsolutePath"
QT_MOC_LITERAL(2, 25, 0), // ""
QT_MOC_LITERAL(3, 26, 4), // "path"
QT_MOC_LITERAL(4, 31, 17), // "changeCurrentPath"
QT_MOC_LITERAL(5, 49, 12), // "changeFolder"
QT_MOC_LITERAL(6, 62, 10), // "folderName"
QT_MOC_LITERAL(7, 73, 19), // "changeOppositePanel"
QT_MOC_LITERAL(8, 93, 8), // "fullPath"
QT_MOC_LITERAL(9, 102, 16), // "changeCursorBusy"
QT_MOC_LITERAL(10, 119, 17), // "changeCursorArray"
QT_MOC_LITERAL(11, 137, 17), // "showOppositePanel"
QT_MOC_LITERAL(12, 155, 6), // "isShow"
QT_MOC_LITERAL(13, 162, 15), // "closeEditSignal"
QT_MOC_LITERAL(14, 178, 21), // "startConversionSignal"
QT_MOC_LITERAL(15, 200, 9), // "startEdit"
QT_MOC_LITERAL(16, 210, 8), // "fileName"
QT_MOC_LITERAL(17, 219, 16), // "makeDirRequested"
QT_MOC_LITERAL(18, 236, 15), // "removeRequested"
QT_MOC_LITERAL(19, 252, 9), // "closeEdit"
QT_MOC_LITERAL(20, 262, 19), // "hideUnselectedFiles"
QT_MOC_LITERAL(21, 282, 8), // "showPath"
QT_MOC_LITERAL(22, 291, 6), // "folder"
QT_MOC_LITERAL(23, 298, 10), // "showFolder"
QT_MOC_LITERAL(24, 309, 10), // "changePath"
QT_MOC_LITERAL(25, 320, 8), // "rootPath"
QT_MOC_LITERAL(26, 329, 17), // "changeOutputDirEx"
QT_MOC_LITERAL(27, 347, 9), // "outputDir"
QT_MOC_LITERAL(28, 357, 14), // "changeFolderEx"
QT_MOC_LITERAL(29, 372, 16), // "editSelectedFile"
QT_MOC_LITERAL(30, 389, 6), // "isEdit"
QT_MOC_LITERAL(31, 396, 12), // "openEditFile"
QT_MOC_LITERAL(32, 409, 16), // "absoluteFilePath"
QT_MOC_LITERAL(33, 426, 16), // "changeConversion"
QT_MOC_LITERAL(34, 443, 10), // "conversion"
QT_MOC_LITERAL(35, 454, 11), // "showRootDir"
QT_MOC_LITERAL(36, 466, 11), // "showPrevDir"
QT_MOC_LITERAL(37, 478, 19), // "startConversionSlot"
QT_MOC_LITERAL(38, 498, 12), // "increaseFont"
QT_MOC_LITERAL(39, 511, 12), // "decreaseFont"
QT_MOC_LITERAL(40, 524, 15), // "isThreadStopped"
QT_MOC_LITERAL(41, 540, 18), // "stopFlatViewThread"
QT_MOC_LITERAL(42, 559, 16), // "maximizeSubPanel"
QT_MOC_LITERAL(43, 576, 23), // "setOppositePanelVisible"
QT_MOC_LITERAL(44, 600, 6), // "isHide"
QT_MOC_LITERAL(45, 607, 14), // "changeWaitIcon"
QT_MOC_LITERAL(46, 622, 5) // "ready"

    },
    "Panel\0changeAbsolutePath\0\0path\0"
    "changeCurrentPath\0changeFolder\0"
    "folderName\0changeOppositePanel\0fullPath\0"
    "changeCursorBusy\0changeCursorArray\0"
    "showOppositePanel\0isShow\0closeEditSignal\0"
    "startConversionSignal\0startEdit\0"
    "fileName\0makeDirRequested\0removeRequested\0"
    "closeEdit\0hideUnselectedFiles\0showPath\0"
    "folder\0showFolder\0changePath\0rootPath\0"
    "changeOutputDirEx\0outputDir\0changeFolderEx\0"
    "editSelectedFile\0isEdit\0openEditFile\0"
    "absoluteFilePath\0changeConversion\0"
    "conversion\0showRootDir\0showPrevDir\0"
    "startConversionSlot\0increaseFont\0"
    "decreaseFont\0isThreadStopped\0"
    "stopFlatViewThread\0maximizeSubPanel\0"
    "setOppositePanelVisible\0isHide\0"
    "changeWaitIcon\0ready"
};
#undef QT_MOC_LITERAL

static const uint qt_meta_data_Panel[] = {

 // content:
       8,       // revision
       0,       // classname
       0,    0, // classinfo
      34,   14, // methods
       0,    0, // properties
       0,    0, // enums/sets
       0,    0, // constructors
       0,       // flags
      12,       // signalCount

 // signals: name, argc, parameters, tag, flags
       1,    1,  184,    2, 0x06 /* Public */,
       4,    1,  187,    2, 0x06 /* Public */,
       5,    1,  190,    2, 0x06 /* Public */,
       7,    1,  193,    2, 0x06 /* Public */,
       9,    0,  196,    2, 0x06 /* Public */,
      10,    0,  197,    2, 0x06 /* Public */,
      11,    1,  198,    2, 0x06 /* Public */,
      13,    0,  201,    2, 0x06 /* Public */,
      14,    0,  202,    2, 0x06 /* Public */,
      15,    1,  203,    2, 0x06 /* Public */,
      17,    0,  206,    2, 0x06 /* Public */,
      18,    0,  207,    2, 0x06 /* Public */,

 // slots: name, argc, parameters, tag, flags
      19,    0,  208,    2, 0x0a /* Public */,
      20,    0,  209,    2, 0x0a /* Public */,
      21,    1,  210,    2, 0x0a /* Public */,
      23,    1,  213,    2, 0x0a /* Public */,
      24,    1,  216,    2, 0x0a /* Public */,
      26,    1,  219,    2, 0x0a /* Public */,
      28,    1,  222,    2, 0x0a /* Public */,
      29,    1,  225,    2, 0x0a /* Public */,
      29,    0,  228,    2, 0x2a /* Public | MethodCloned */,
      31,    2,  229,    2, 0x0a /* Public */,
      31,    1,  234,    2, 0x2a /* Public | MethodCloned */,
      33,    1,  237,    2, 0x0a /* Public */,
      35,    0,  240,    2, 0x0a /* Public */,
      36,    0,  241,    2, 0x0a /* Public */,
      37,    0,  242,    2, 0x0a /* Public */,
      38,    0,  243,    2, 0x0a /* Public */,
      39,    0,  244,    2, 0x0a /* Public */,
      40,    0,  245,    2, 0x0a /* Public */,
      41,    0,  246,    2, 0x0a /* Public */,
      42,    0,  247,    2, 0x0a /* Public */,
      43,    1,  248,    2, 0x0a /* Public */,
      45,    1,  251,    2, 0x0a /* Public */,

 // signals: parameters
    QMetaType::Void, QMetaType::QString,    3,
    QMetaType::Void, QMetaType::QString,    3,
    QMetaType::Void, QMetaType::QString,    6,
    QMetaType::Void, QMetaType::QString,    8,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void, QMetaType::Bool,   12,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void, QMetaType::QString,   16,
    QMetaType::Void,
    QMetaType::Void,

 // slots: parameters
    QMetaType::Bool,
    QMetaType::Void,
    QMetaType::Void, QMetaType::QString,   22,
    QMetaType::Void, QMetaType::QString,   22,
    QMetaType::Void, QMetaType::QString,   25,
    QMetaType::Void, QMetaType::QString,   27,
    QMetaType::Void, QMetaType::QString,    6,
    QMetaType::Void, QMetaType::Bool,   30,
    QMetaType::Void,
    QMetaType::Void, QMetaType::QString, QMetaType::Bool,   32,   30,
    QMetaType::Void, QMetaType::QString,   32,
    QMetaType::Void, QMetaType::QString,   34,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Bool,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void, QMetaType::Bool,   44,
    QMetaType::Void, QMetaType::Bool,   46,

       0        // eod
};

void Panel::qt_static_metacall(QObject *_o, QMetaObject::Call _c, int _id, void **_a)
{
    if (_c == QMetaObject::InvokeMetaMethod) {
        auto *_t = static_cast<Panel *>(_o);
        (void)_t;
        switch (_id) {
        case 0: _t->changeAbsolutePath((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 1: _t->changeCurrentPath((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 2: _t->changeFolder((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 3: _t->changeOppositePanel((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 4: _t->changeCursorBusy(); break;
        case 5: _t->changeCursorArray(); break;
        case 6: _t->showOppositePanel((*reinterpret_cast< bool(*)>(_a[1]))); break;
        case 7: _t->closeEditSignal(); break;
        case 8: _t->startConversionSignal(); break;
        case 9: _t->startEdit((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 10: _t->makeDirRequested(); break;
        case 11: _t->removeRequested(); break;
        case 12: { bool _r = _t->closeEdit();
            if (_a[0]) *reinterpret_cast< bool*>(_a[0]) = std::move(_r); }  break;
        case 13: _t->hideUnselectedFiles(); break;
        case 14: _t->showPath((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 15: _t->showFolder((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 16: _t->changePath((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 17: _t->changeOutputDirEx((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 18: _t->changeFolderEx((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 19: _t->editSelectedFile((*reinterpret_cast< bool(*)>(_a[1]))); break;
        case 20: _t->editSelectedFile(); break;
        case 21: _t->openEditFile((*reinterpret_cast< const QString(*)>(_a[1])),(*reinterpret_cast< bool(*)>(_a[2]))); break;
        case 22: _t->openEditFile((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 23: _t->changeConversion((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 24: _t->showRootDir(); break;
        case 25: _t->showPrevDir(); break;
        case 26: _t->startConversionSlot(); break;
        case 27: _t->increaseFont(); break;
        case 28: _t->decreaseFont(); break;
        case 29: { bool _r = _t->isThreadStopped();
            if (_a[0]) *reinterpret_cast< bool*>(_a[0]) = std::move(_r); }  break;
        case 30: _t->stopFlatViewThread(); break;
        case 31: _t->maximizeSubPanel(); break;
        case 32: _t->setOppositePanelVisible((*reinterpret_cast< bool(*)>(_a[1]))); break;
        case 33: _t->changeWaitIcon((*reinterpret_cast< bool(*)>(_a[1]))); break;
        default: ;
        }
    } else if (_c == QMetaObject::IndexOfMethod) {
        int *result = reinterpret_cast<int *>(_a[0]);
        {
            using _t = void (Panel::*)(const QString & );
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::changeAbsolutePath)) {
                *result = 0;
                return;
            }
        }
        {
            using _t = void (Panel::*)(const QString & );
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::changeCurrentPath)) {
                *result = 1;
                return;
            }
        }
        {
            using _t = void (Panel::*)(const QString & );
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::changeFolder)) {
                *result = 2;
                return;
            }
        }
        {
            using _t = void (Panel::*)(const QString & );
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::changeOppositePanel)) {
                *result = 3;
                return;
            }
        }
        {
            using _t = void (Panel::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::changeCursorBusy)) {
                *result = 4;
                return;
            }
        }
        {
            using _t = void (Panel::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::changeCursorArray)) {
                *result = 5;
                return;
            }
        }
        {
            using _t = void (Panel::*)(bool );
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::showOppositePanel)) {
                *result = 6;
                return;
            }
        }
        {
            using _t = void (Panel::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::closeEditSignal)) {
                *result = 7;
                return;
            }
        }
        {
            using _t = void (Panel::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::startConversionSignal)) {
                *result = 8;
                return;
            }
        }
        {
            using _t = void (Panel::*)(const QString & );
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::startEdit)) {
                *result = 9;
                return;
            }
        }
        {
            using _t = void (Panel::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::makeDirRequested)) {
                *result = 10;
                return;
            }
        }
        {
            using _t = void (Panel::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&Panel::removeRequested)) {
                *result = 11;
                return;
            }
        }
    }
}

QT_INIT_METAOBJECT const QMetaObject Panel::staticMetaObject = { {
    QMetaObject::SuperData::link<QObject::staticMetaObject>(),
    qt_meta_stringdata_Panel.data,
    qt_meta_data_Panel,
    qt_static_metacall,
    nullptr,
    nullptr
} };


const QMetaObject *Panel::metaObject() const
{
    return QObject::d_ptr->metaObject ? QObject::d_ptr->dynamicMetaObject() : &staticMetaObject;
}

void *Panel::qt_metacast(const char *_clname)
{
    if (!_clname) return nullptr;
    if (!strcmp(_clname, qt_meta_stringdata_Panel.stringdata0))
        return static_cast<void*>(this);
    return QObject::qt_metacast(_clname);
}

int Panel::qt_metacall(QMetaObject::Call _c, int _id, void **_a)
{
    _id = QObject::qt_metacall(_c, _id, _a);
    if (_id < 0)
        return _id;
    if (_c == QMetaObject::InvokeMetaMethod) {
        if (_id < 34)
            qt_static_metacall(this, _c, _id, _a);
        _id -= 34;
    } else if (_c == QMetaObject::RegisterMethodArgumentMetaType) {
        if (_id < 34)
            *reinterpret_cast<int*>(_a[0]) = -1;
        _id -= 34;
    }
    return _id;
}

// SIGNAL 0
void Panel::changeAbsolutePath(const QString & _t1)
{
    void *_a[] = { nullptr, const_cast<void*>(reinterpret_cast<const void*>(std::addressof(_t1))) };
    QMetaObject::activate(this, &staticMetaObject, 0, _a);
}

// SIGNAL 1
void Panel::changeCurrentPath(const QString & _t1)
{
    void *_a[] = { nullptr, const_cast<void*>(reinterpret_cast<const void*>(std::addressof(_t1))) };
    QMetaObject::activate(this, &staticMetaObject, 1, _a);
}

// SIGNAL 2
void Panel::changeFolder(const QString & _t1)
{
    void *_a[] = { nullptr, const_cast<void*>(reinterpret_cast<const void*>(std::addressof(_t1))) };
    QMetaObject::activate(this, &staticMetaObject, 2, _a);
}

// SIGNAL 3
void Panel::changeOppositePanel(const QString & _t1)
{
    void *_a[] = { nullptr, const_cast<void*>(reinterpret_cast<const void*>(std::addressof(_t1))) };
    QMetaObject::activate(this, &staticMetaObject, 3, _a);
}

// SIGNAL 4
void Panel::changeCursorBusy()
{
    QMetaObject::activate(this, &staticMetaObject, 4, nullptr);
}

// SIGNAL 5
void Panel::changeCursorArray()
{
    QMetaObject::activate(this, &staticMetaObject, 5, nullptr);
}

// SIGNAL 6
void Panel::showOppositePanel(bool _t1)
{
    void *_a[] = { nullptr, const_cast<void*>(reinterpret_cast<const void*>(std::addressof(_t1))) };
    QMetaObject::activate(this, &staticMetaObject, 6, _a);
}

// SIGNAL 7
void Panel::closeEditSignal()
{
    QMetaObject::activate(this, &staticMetaObject, 7, nullptr);
}

// SIGNAL 8
void Panel::startConversionSignal()
{
    QMetaObject::activate(this, &staticMetaObject, 8, nullptr);
}

// SIGNAL 9
void Panel::startEdit(const QString & _t1)
{
    void *_a[] = { nullptr, const_cast<void*>(reinterpret_cast<const void*>(std::addressof(_t1))) };
    QMetaObject::activate(this, &staticMetaObject, 9, _a);
}

// SIGNAL 10
void Panel::makeDirRequested()
{
    QMetaObject::activate(this, &staticMetaObject, 10, nullptr);
}

// SIGNAL 11
void Panel::removeRequested()
{
    QMetaObject::activate(this, &staticMetaObject, 11, nullptr);
}
QT_WARNING_POP
QT_END_MOC_NAMESPACE
