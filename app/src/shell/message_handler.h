// Qt's messages, QML's console.log among them, go to the device's log sink.
#ifndef LUMENPRESS_APP_MESSAGE_HANDLER_H
#define LUMENPRESS_APP_MESSAGE_HANDLER_H

#include <QString>
#include <QtGlobal>

void customMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message);

#endif
