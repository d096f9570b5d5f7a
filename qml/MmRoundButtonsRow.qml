import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.bookstore 1.0

// The ways into the catalogue below the home page's header: the category tree, the popular
// genres and the store's featured lists.
Item {
    id: row

    implicitHeight: flow.height + 2 * BookstoreConstants.defaultElementClearanceVer

    Flow {
        id: flow
        x: BookstoreConstants.defaultBorderMargin
        y: BookstoreConstants.defaultElementClearanceVer
        width: parent.width - 2 * x
        spacing: BookstoreConstants.defaultElementClearanceHor

        LPcontrols2.RoundedTextButton {
            objectName: "openCategories"
            height: Math.round(46 * LPcontrols2.Global.dp)
            text: qsTr("@Categories")
            font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
            onClicked: root.openCategoryTree()
        }
        LPcontrols2.RoundedTextButton {
            objectName: "openPopularGenres"
            height: Math.round(46 * LPcontrols2.Global.dp)
            text: qsTr("@PopularGenres")
            font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
            onClicked: root.openPopularGenres()
        }
        Repeater {
            model: FeaturedLinksModel
            delegate: LPcontrols2.RoundedTextButton {
                objectName: "openFeatured"
                height: Math.round(46 * LPcontrols2.Global.dp)
                text: model.title
                font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
                onClicked: root.navigateAcquisitionList(model.element_model.getUrl())
            }
        }
    }
}
