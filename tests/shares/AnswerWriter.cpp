#include "output/AnswerFile.h"
#include "output/AnswerRecord.h"
#include "platform/MsgBox.h"
#include "platform/RuntimeError.h"

#include <QTextStream>

/// Adds records to an answer file as the program does, and tells how it went:
///
///     answer_writer PATH COUNT
///
/// Each record has the number that the file's last one asks for. Ends with 1 when one could not be
/// written.
int main(int argc, char **argv)
{
    QTextStream out(stdout);
    if (argc != 3) {
        out << "answer_writer PATH COUNT\n";
        return 2;
    }
    SetMsgBoxHandler([&](const MessageBoxRequest &box) {
        out << QString(box.text).replace("\r\n", " ") << Qt::endl;
        return BoxButton::Ok;
    });
    Files files;
    files.SetLockWait(60'000);
    OutputFiles numbered(files);
    const int count = QByteArray(argv[2]).toInt();
    for (int done = 0; done < count; ++done) {
        AnswerFile file(numbered, QString::fromLocal8Bit(argv[1]));
        if (!file.Open())
            return 1;
        int error = file.Mend();
        if (error == RuntimeError::None) {
            const int number = file.LastRecordNumber(ShortRecordLength) + 1;
            const QByteArray start = QByteArray::number(number).rightJustified(5, '0') + "0702";
            error = file.AppendLine(start.leftJustified(ShortRecordLength, 'x'));
        }
        if (error != RuntimeError::None) {
            ShowFileError(error, argv[1]);
            return 1;
        }
    }
    return 0;
}
