/****************************************************************************
** Meta object code from reading C++ file 'mainwindow.h'
**
** Created by: The Qt Meta Object Compiler version 67 (Qt 5.15.8)
**
** WARNING! All changes made in this file will be lost!
*****************************************************************************/

#include <memory>
#include "../../../../sources/mainwindow.h"
#include <QtCore/qbytearray.h>
#include <QtCore/qmetatype.h>
#if !defined(Q_MOC_OUTPUT_REVISION)
#error "The header file 'mainwindow.h' doesn't include <QObject>."
#elif Q_MOC_OUTPUT_REVISION != 67
#error "This file was generated using the moc from 5.15.8. It"
#error "cannot be used with the include files from this version of Qt."
#error "(The moc has changed too much.)"
#endif

QT_BEGIN_MOC_NAMESPACE
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
struct qt_meta_stringdata_MainWindow_t {
    QByteArrayData data[39];
    char stringdata0[498];
};
#define QT_MOC_LITERAL(idx, ofs, len) \
    Q_STATIC_BYTE_ARRAY_DATA_HEADER_INITIALIZER_WITH_OFFSET(len, \
    qptrdiff(offsetof(qt_meta_stringdata_MainWindow_t, stringdata0) + ofs \
        - idx * sizeof(QByteArrayData)) \
    )
static const qt_meta_stringdata_MainWindow_t qt_meta_stringdata_MainWindow = {
    {
QT_MOC_LITERAL(0, 0, 10), // "MainWindow"
QT_MOC_LITERAL(1, 11, 20), // "showFindLogRequested"
QT_MOC_LITERAL(2, 32, 0), // ""
QT_MOC_LITERAL(3, 33, 15), // "turnWaitingMode"
QT_MOC_LITERAL(4, 49, 15), // "Qt::CursorShape"
QT_MOC_LITERAL(5, 65, 6), // "cursor"
QT_MOC_LITERAL(6, 72, 10), // "stopThread"
QT_MOC_LITERAL(7, 83, 9), // "pauseMode"
QT_MOC_LITERAL(8, 93, 8), // "isRunnig"
QT_MOC_LITERAL(9, 102, 14), // "conversionMode"
QT_MOC_LITERAL(10, 117, 17), // "startConversionEx"
QT_MOC_LITERAL(11, 135, 23), // "changeConversionIndexes"
QT_MOC_LITERAL(12, 159, 11), // "sourceIndex"
QT_MOC_LITERAL(13, 171, 11), // "targetIndex"
QT_MOC_LITERAL(14, 183, 16), // "ShowFilterDialog"
QT_MOC_LITERAL(15, 200, 11), // "showFindLog"
QT_MOC_LITERAL(16, 212, 17), // "ShowConversionLog"
QT_MOC_LITERAL(17, 230, 21), // "showConnectionOptions"
QT_MOC_LITERAL(18, 252, 16), // "migrationOptions"
QT_MOC_LITERAL(19, 269, 19), // "showEncodingOptions"
QT_MOC_LITERAL(20, 289, 9), // "showAbout"
QT_MOC_LITERAL(21, 299, 19), // "printStandartOutput"
QT_MOC_LITERAL(22, 319, 7), // "viewLog"
QT_MOC_LITERAL(23, 327, 7), // "makeDir"
QT_MOC_LITERAL(24, 335, 12), // "deleteObject"
QT_MOC_LITERAL(25, 348, 18), // "changeProcessState"
QT_MOC_LITERAL(26, 367, 22), // "QProcess::ProcessState"
QT_MOC_LITERAL(27, 390, 12), // "processState"
QT_MOC_LITERAL(28, 403, 9), // "copyFiles"
QT_MOC_LITERAL(29, 413, 10), // "changeRoot"
QT_MOC_LITERAL(30, 424, 6), // "folder"
QT_MOC_LITERAL(31, 431, 11), // "initSubMenu"
QT_MOC_LITERAL(32, 443, 8), // "QAction*"
QT_MOC_LITERAL(33, 452, 6), // "action"
QT_MOC_LITERAL(34, 459, 12), // "focusChanged"
QT_MOC_LITERAL(35, 472, 8), // "QWidget*"
QT_MOC_LITERAL(36, 481, 3), // "old"
QT_MOC_LITERAL(37, 485, 3), // "now"
QT_MOC_LITERAL(38, 489, 8) // "copyFile"

    },
    "MainWindow\0showFindLogRequested\0\0"
    "turnWaitingMode\0Qt::CursorShape\0cursor\0"
    "stopThread\0pauseMode\0isRunnig\0"
    "conversionMode\0startConversionEx\0"
    "changeConversionIndexes\0sourceIndex\0"
    "targetIndex\0ShowFilterDialog\0showFindLog\0"
    "ShowConversionLog\0showConnectionOptions\0"
    "migrationOptions\0showEncodingOptions\0"
    "showAbout\0printStandartOutput\0viewLog\0"
    "makeDir\0deleteObject\0changeProcessState\0"
    "QProcess::ProcessState\0processState\0"
    "copyFiles\0changeRoot\0folder\0initSubMenu\0"
    "QAction*\0action\0focusChanged\0QWidget*\0"
    "old\0now\0copyFile"
};
#undef QT_MOC_LITERAL

static const uint qt_meta_data_MainWindow[] = {

 // content:
       8,       // revision
       0,       // classname
       0,    0, // classinfo
      24,   14, // methods
       0,    0, // properties
       0,    0, // enums/sets
       0,    0, // constructors
       0,       // flags
       1,       // signalCount

 // signals: name, argc, parameters, tag, flags
       1,    0,  134,    2, 0x06 /* Public */,

 // slots: name, argc, parameters, tag, flags
       3,    1,  135,    2, 0x0a /* Public */,
       6,    0,  138,    2, 0x0a /* Public */,
       7,    1,  139,    2, 0x0a /* Public */,
       9,    0,  142,    2, 0x0a /* Public */,
      10,    0,  143,    2, 0x0a /* Public */,
      11,    2,  144,    2, 0x0a /* Public */,
      14,    0,  149,    2, 0x0a /* Public */,
      15,    0,  150,    2, 0x0a /* Public */,
      16,    0,  151,    2, 0x0a /* Public */,
      17,    0,  152,    2, 0x0a /* Public */,
      18,    0,  153,    2, 0x0a /* Public */,
      19,    0,  154,    2, 0x0a /* Public */,
      20,    0,  155,    2, 0x0a /* Public */,
      21,    0,  156,    2, 0x0a /* Public */,
      22,    0,  157,    2, 0x0a /* Public */,
      23,    0,  158,    2, 0x0a /* Public */,
      24,    0,  159,    2, 0x0a /* Public */,
      25,    1,  160,    2, 0x0a /* Public */,
      28,    0,  163,    2, 0x0a /* Public */,
      29,    1,  164,    2, 0x0a /* Public */,
      31,    1,  167,    2, 0x0a /* Public */,
      34,    2,  170,    2, 0x0a /* Public */,
      38,    0,  175,    2, 0x0a /* Public */,

 // signals: parameters
    QMetaType::Void,

 // slots: parameters
    QMetaType::Void, 0x80000000 | 4,    5,
    QMetaType::Void,
    QMetaType::Void, QMetaType::Bool,    8,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void, QMetaType::Int, QMetaType::Int,   12,   13,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void,
    QMetaType::Void, 0x80000000 | 26,   27,
    QMetaType::Void,
    QMetaType::Void, QMetaType::QString,   30,
    QMetaType::Void, 0x80000000 | 32,   33,
    QMetaType::Void, 0x80000000 | 35, 0x80000000 | 35,   36,   37,
    QMetaType::Void,

       0        // eod
};

void MainWindow::qt_static_metacall(QObject *_o, QMetaObject::Call _c, int _id, void **_a)
{
    if (_c == QMetaObject::InvokeMetaMethod) {
        auto *_t = static_cast<MainWindow *>(_o);
        (void)_t;
        switch (_id) {
        case 0: _t->showFindLogRequested(); break;
        case 1: _t->turnWaitingMode((*reinterpret_cast< Qt::CursorShape(*)>(_a[1]))); break;
        case 2: _t->stopThread(); break;
        case 3: _t->pauseMode((*reinterpret_cast< bool(*)>(_a[1]))); break;
        case 4: _t->conversionMode(); break;
        case 5: _t->startConversionEx(); break;
        case 6: _t->changeConversionIndexes((*reinterpret_cast< int(*)>(_a[1])),(*reinterpret_cast< int(*)>(_a[2]))); break;
        case 7: _t->ShowFilterDialog(); break;
        case 8: _t->showFindLog(); break;
        case 9: _t->ShowConversionLog(); break;
        case 10: _t->showConnectionOptions(); break;
        case 11: _t->migrationOptions(); break;
        case 12: _t->showEncodingOptions(); break;
        case 13: _t->showAbout(); break;
        case 14: _t->printStandartOutput(); break;
        case 15: _t->viewLog(); break;
        case 16: _t->makeDir(); break;
        case 17: _t->deleteObject(); break;
        case 18: _t->changeProcessState((*reinterpret_cast< QProcess::ProcessState(*)>(_a[1]))); break;
        case 19: _t->copyFiles(); break;
        case 20: _t->changeRoot((*reinterpret_cast< const QString(*)>(_a[1]))); break;
        case 21: _t->initSubMenu((*reinterpret_cast< QAction*(*)>(_a[1]))); break;
        case 22: _t->focusChanged((*reinterpret_cast< QWidget*(*)>(_a[1])),(*reinterpret_cast< QWidget*(*)>(_a[2]))); break;
        case 23: _t->copyFile(); break;
        default: ;
        }
    } else if (_c == QMetaObject::RegisterMethodArgumentMetaType) {
        switch (_id) {
        default: *reinterpret_cast<int*>(_a[0]) = -1; break;
        case 22:
            switch (*reinterpret_cast<int*>(_a[1])) {
            default: *reinterpret_cast<int*>(_a[0]) = -1; break;
            case 1:
            case 0:
                *reinterpret_cast<int*>(_a[0]) = qRegisterMetaType< QWidget* >(); break;
            }
            break;
        }
    } else if (_c == QMetaObject::IndexOfMethod) {
        int *result = reinterpret_cast<int *>(_a[0]);
        {
            using _t = void (MainWindow::*)();
            if (*reinterpret_cast<_t *>(_a[1]) == static_cast<_t>(&MainWindow::showFindLogRequested)) {
                *result = 0;
                return;
            }
        }
    }
}

QT_INIT_METAOBJECT const QMetaObject MainWindow::staticMetaObject = { {
    QMetaObject::SuperData::link<QMainWindow::staticMetaObject>(),
    qt_meta_stringdata_MainWindow.data,
    qt_meta_data_MainWindow,
    qt_static_metacall,
    nullptr,
    nullptr
} };


const QMetaObject *MainWindow::metaObject() const
{
    return QObject::d_ptr->metaObject ? QObject::d_ptr->dynamicMetaObject() : &staticMetaObject;
}

void *MainWindow::qt_metacast(const char *_clname)
{
    if (!_clname) return nullptr;
    if (!strcmp(_clname, qt_meta_stringdata_MainWindow.stringdata0))
        return static_cast<void*>(this);
    return QMainWindow::qt_metacast(_clname);
}

int MainWindow::qt_metacall(QMetaObject::Call _c, int _id, void **_a)
{
    _id = QMainWindow::qt_metacall(_c, _id, _a);
    if (_id < 0)
        return _id;
    if (_c == QMetaObject::InvokeMetaMethod) {
        if (_id < 24)
            qt_static_metacall(this, _c, _id, _a);
        _id -= 24;
    } else if (_c == QMetaObject::RegisterMethodArgumentMetaType) {
        if (_id < 24)
            qt_static_metacall(this, _c, _id, _a);
        _id -= 24;
    }
    return _id;
}

// SIGNAL 0
void MainWindow::showFindLogRequested()
{
    QMetaObject::activate(this, &staticMetaObject, 0, nullptr);
}
QT_WARNING_POP
QT_END_MOC_NAMESPACE
