pragma Singleton
import QtQuick 2.15
import com.lumenpress.controls 2.0

// Every layout measure of the screens, following the panel in use.
QtObject {
    // How much wider than the reference panel of 758 pixels at 212 dpi this one is, in units.
    readonly property real dpXCoef: DeviceInfoProvider.screenWidth / (572 * Global.dp)
    readonly property int defaultBorderMargin: Math.round(16 * Global.dp * dpXCoef)
    readonly property int defaultBorderThiknes: Math.max(1, Math.round(1.5 * Global.dp))
    readonly property int defaultButtonPressedBorderThikness: Math.round(3 * Global.dp)
    readonly property int defaultElementClearanceVer: Math.round(12 * Global.dp)
    readonly property int defaultElementClearanceHor: Math.round(12 * Global.dp * dpXCoef)
    readonly property int gridElementClearenceVer: Math.round(20 * Global.dp)
    readonly property int defaultImageClearence: Math.round(8 * Global.dp)
    readonly property int topImageInterval: Math.round(10 * Global.dp)
    readonly property int topImageBordeInterval: Math.round(6 * Global.dp)
    readonly property int defaultInfoScreenWidth: Math.round(DeviceInfoProvider.screenWidth * 0.8)
    readonly property int defaultInfoScrennBorder: Math.round(3 * Global.dp)
    readonly property int defaultInfoScreenSideMargin: Math.round(24 * Global.dp * dpXCoef)
    readonly property int rowThumbWidth: Math.round((DeviceInfoProvider.screenWidth - 2 * defaultBorderMargin - 3 * defaultElementClearanceHor) / 4)
    readonly property int listThumbWidth: Math.round(88 * Global.dp)
    readonly property int grouperThumbWidth: Math.round(rowThumbWidth * 0.8)
    readonly property int grouperImg2Width: Math.round(grouperThumbWidth * 0.88)
    readonly property int grouperImg3Width: Math.round(grouperThumbWidth * 0.76)
    readonly property int audioCoverListHeight: listThumbWidth
    readonly property int bookCoverListHeight: Math.round(listThumbWidth * 1.5)
    readonly property int audioElementListHeight: Math.round(audioCoverListHeight + 2 * defaultElementClearanceVer)
    readonly property int bookElementListHeight: Math.round(bookCoverListHeight + 2 * defaultElementClearanceVer)
    readonly property int audioCoverRowHeight: rowThumbWidth
    readonly property int bookCoverRowHeight: Math.round(rowThumbWidth * 1.5)
    readonly property int audioElementRowHeight: Math.round(audioCoverRowHeight + 64 * Global.dp)
    readonly property int bookElementRowHeight: Math.round(bookCoverRowHeight + 64 * Global.dp)
    readonly property int grouperAThumbHeight: grouperThumbWidth
    readonly property int grouperThumbHeight: Math.round(grouperThumbWidth * 1.5)
    readonly property int rowThumbHeight: bookCoverRowHeight
    readonly property int listThumbHeight: bookCoverListHeight
    readonly property int grouperImg2Height: Math.round(grouperImg2Width * 1.5)
    readonly property int grouperImg3Height: Math.round(grouperImg3Width * 1.5)
    readonly property int coverSelectMargins: Math.round(4 * Global.dp)
    readonly property int breadcrumbHeight: Math.round(44 * Global.dp)
    readonly property int elementListSpacing: Math.round(16 * Global.dp)
    readonly property int selectionTimerMs: 300
    readonly property int element_by_3_spacing: Math.round(14 * Global.dp * dpXCoef)
    readonly property int element_by_3_width: Math.round((DeviceInfoProvider.screenWidth - 2 * defaultBorderMargin - 2 * element_by_3_spacing) / 3)
    readonly property int element_by_3_height: Math.round(element_by_3_width * 1.5 + 80 * Global.dp)
    readonly property int thumb_el_by_4_width: Math.round((DeviceInfoProvider.screenWidth - 2 * defaultBorderMargin - 3 * defaultElementClearanceHor) / 4)
}
