// The headers that most sources include, compiled once for each kind of target. Sources still include what they use:
// script/lint compiles them without this file.
#ifdef __cplusplus
#include "coreheaders.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QWidget>
#endif
