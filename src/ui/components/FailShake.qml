import Sorrelin
import QtQuick

// Shakes a row when the action of its advice failed: it watches `failedRec` (the id of the
// advice that failed last, empty for none) and shakes whenever it turns to `recId`.
//     transform: FailShake { recId: rec.id; failedRec: AppModel.failedRec }
Shake {
    id: root
    property string recId: ""
    property string failedRec: ""
    // How many times it shook, for whoever needs to know (tests among them).
    property int shakes: 0

    onFailedRecChanged: {
        if (recId !== "" && failedRec === recId) {
            shakes += 1;
            start();
        }
    }
}
