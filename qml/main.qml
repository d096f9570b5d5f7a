import QtQuick 2.15
import QtQuick.Window 2.15
import QtQml 2.15
import com.lumenpress.controls 2.0 as LPcontrols2
import com.lumenpress.controls 2.1 as LPControls2
import com.lumenpress.bookstore 1.0
import qml.bookstore 1.0

// The store's one window. Every view is a loader made at once; a view loads its file when it is
// first shown, and every change of view goes through the functions of root.
Window {
    id: root

    width: LPcontrols2.DeviceInfoProvider.screenWidth
    height: LPcontrols2.DeviceInfoProvider.screenHeight - LPcontrols2.DeviceInfoProvider.panelHeight
    visible: true
    color: "white"
    title: qsTr("@$UniversalStore")

    function hideAll() {
        for (const view of [login_view, home, credit_card_view, detail_view, acquisition_view, grid_view,
                            search_view, category_tree_view, popular_genres_view, wishlist_view, purchased_view])
            view.visible = false
        context_menu.sourceComponent = undefined
    }

    function openLoginView() {
        hideAll()
        if (login_view.source.toString() === "")
            login_view.source = "login/LoginMain.qml"
        login_view.visible = true
    }

    function closeLoginView() {
        hideAll()
        login_view.source = ""
        home.visible = true
    }

    function showView(view, file) {
        if (view.source.toString() === "")
            view.source = file
        view.visible = true
    }

    function showBooks() {
        if (UserData.display_role === "list")
            showView(acquisition_view, "AcquisitionListView.qml")
        else
            showView(grid_view, "AcquisitionGridView.qml")
    }

    function booksView() {
        return UserData.display_role === "list" ? acquisition_view : grid_view
    }

    // The page being left keeps how far it was scrolled, for the way back.
    function rememberPosition() {
        for (const view of [home, acquisition_view, grid_view]) {
            if (view.visible && view.item && view.item.currentPosition) {
                NavigationHistory.setPosition(view.item.currentPosition())
                return
            }
        }
    }

    // The view's rows may arrive from the cache only after it is shown.
    function restorePosition(view) {
        const position = NavigationHistory.getPosition()
        if (view === home)
            console.log("Try to Position Home list to " + position)
        Qt.callLater(function() {
            if (view.item && view.item.positionToElement)
                view.item.positionToElement(position)
        })
    }

    function genresUrl() {
        // The tree lies beside the home feed, in the same content language.
        return RootListModel.getUrl().replace(/home(\?|$)/, "genres$1")
    }

    function openList(url) {
        hideAll()
        NavigationHistory.pushListData(url)
        AcquisitionListModel.setModelToUrl(url)
        SortModel.setModelToUrl(url)
        showBooks()
    }

    function navigateAcquisitionList(url) {
        rememberPosition()
        openList(url)
    }

    // The same list in another order takes the place of the list on the history.
    function changeSortType(index) {
        const url = SortModel.getUrlById(index)
        if (url === "")
            return
        NavigationHistory.popItems(1)
        openList(url)
    }

    function openCategoryTree() {
        rememberPosition()
        hideAll()
        NavigationHistory.pushListData(genresUrl())
        showView(category_tree_view, "CategoryTreeView.qml")
    }

    function updateCategoryTree() {
        CategoryTreeListModel.setModelToUrl(genresUrl())
    }

    function openPopularGenres() {
        rememberPosition()
        hideAll()
        NavigationHistory.pushGenreList(genresUrl())
        showView(popular_genres_view, "PopularGenresView.qml")
    }

    // The book's genres and lists come from the list that holds it.
    function showDetail(url, num) {
        GenreModel.setGenreModelTo(url, num)
        FeedLinksModel.setListUrl(url, num)
        showView(detail_view, "BookDetailView.qml")
    }

    function navigateDetailFromElementList(list_model, num) {
        rememberPosition()
        hideAll()
        NavigationHistory.pushDetailedList(list_model.getUrl(), num)
        list_model.setDetailModelTo(num)
        showDetail(list_model.getUrl(), num)
    }

    function navigateDetail(url, num) {
        rememberPosition()
        hideAll()
        NavigationHistory.pushDetailedList(url, num)
        DetailModel.setEntry(url, num)
        showDetail(url, num)
    }

    function navigateDetailByEntryUrl(url) {
        rememberPosition()
        hideAll()
        NavigationHistory.pushDetailedList(url, 0)
        DetailModel.setEntryUrl(url)
        showDetail(url, 0)
    }

    function openSearchView() {
        rememberPosition()
        hideAll()
        SearchSuggestion.resetSuggestion()
        search_view.source = ""
        showView(search_view, "SearchView.qml")
    }

    // The home feed says where its search lies.
    function openSearchResults(text) {
        LastSearch.AddLastSearch(text)
        hideAll()
        AcquisitionListModel.setModelToUrl(RootListModel.getUrl())
        AcquisitionListModel.setSearchString(text)
        NavigationHistory.pushSearchList(AcquisitionListModel.getUrl())
        SortModel.setModelToUrl(AcquisitionListModel.getUrl())
        showBooks()
    }

    function switchToGrid(grid) {
        UserData.setCurrentDisplayType(grid ? "grid" : "list")
        hideAll()
        showBooks()
    }

    // Back to the place before; at the first place of the history the store stays at home.
    function navigateBack() {
        if (NavigationHistory.size() <= 1 && UserData.exitAfterLogin) {
            UserData.closeApp(false)
            return
        }
        if (NavigationHistory.size() > 1)
            NavigationHistory.popItems(1)
        hideAll()
        const url = NavigationHistory.current_url
        switch (NavigationHistory.itemType) {
        case HistoryElementType.NavigateItemsList:
            if (/opds\/genres$/.test(url) || /opds\/genres.productType/.test(url) || /opds\/genres\?content/.test(url)) {
                showView(category_tree_view, "CategoryTreeView.qml")
                break
            }
            AcquisitionListModel.setModelToUrl(url)
            SortModel.setModelToUrl(url)
            showBooks()
            restorePosition(booksView())
            break
        case HistoryElementType.NavigateSearchList:
            AcquisitionListModel.setModelToUrl(url)
            SortModel.setModelToUrl(url)
            showBooks()
            restorePosition(booksView())
            break
        case HistoryElementType.NavigateElement:
            DetailModel.setEntry(url, NavigationHistory.item_num)
            showDetail(url, NavigationHistory.item_num)
            break
        case HistoryElementType.NavigateGenreList:
            showView(popular_genres_view, "PopularGenresView.qml")
            break
        default:
            console.log("Open home")
            home.visible = true
            restorePosition(home)
        }
    }

    function openCustomPopUp() {
        context_menu.sourceComponent = user_menu
    }

    // Another store on another host would not know the signed-in account.
    function askAutoLogout(store_index) {
        auto_logout_confirmation_dialog.store_index = store_index
        auto_logout_confirmation_dialog.sourceComponent = auto_logout_dialog
    }

    LPcontrols2.LoaderNoSleep {
        id: login_view
        objectName: "login_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: home
        objectName: "home"
        anchors.fill: parent
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: credit_card_view
        objectName: "credit_card_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: detail_view
        objectName: "detail_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: acquisition_view
        objectName: "acquisition_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: grid_view
        objectName: "grid_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: search_view
        objectName: "search_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: category_tree_view
        objectName: "category_tree_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: popular_genres_view
        objectName: "popular_genres_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: wishlist_view
        objectName: "wishlist_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }
    LPcontrols2.LoaderNoSleep {
        id: purchased_view
        objectName: "purchased_view"
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible) StoreManager.requireHQUpdate()
    }

    // Pop-ups and dialogs lie over the views.
    LPcontrols2.LoaderNoSleep {
        id: context_menu
        objectName: "context_menu"
        anchors.fill: parent
    }
    Component {
        id: user_menu
        CustomPopUpMenu {
            onClosed: context_menu.sourceComponent = undefined
        }
    }
    LPcontrols2.LoaderNoSleep {
        id: auto_logout_confirmation_dialog
        objectName: "auto_logout_confirmation_dialog"
        property int store_index: -1
        anchors.fill: parent
    }
    Component {
        id: auto_logout_dialog
        LPcontrols2.ConfirmationDialog {
            objectName: "auto_logout_dialog"
            title: qsTr("@LogOut")
            text: qsTr("@AutoLogout")
            acceptText: qsTr("@Logout")
            rejectText: qsTr("@Cancel")
            visible: true
            // Either answer closes the dialog before it is given: the loader lets go of it afterwards.
            onClosed: Qt.callLater(function() { auto_logout_confirmation_dialog.sourceComponent = undefined })
            onAccepted: {
                const index = auto_logout_confirmation_dialog.store_index
                if (StoresModel.isLegalAccepted(index, UserData.getUserEmail()))
                    StoresModel.setModelToIndex(index)
            }
        }
    }
    LPcontrols2.LoaderNoSleep {
        id: pop_up_login
        objectName: "pop_up_login"
        anchors.fill: parent
    }
    LPcontrols2.LoaderNoSleep {
        id: saved_card_loader
        objectName: "saved_card_loader"
        anchors.fill: parent
    }
    LPcontrols2.LoaderNoSleep {
        id: payment_method
        objectName: "payment_method"
        anchors.fill: parent
    }
    LPcontrols2.LoaderNoSleep {
        id: grouped_selector_loader
        objectName: "grouped_selector_loader"
        anchors.fill: parent
    }
    LPcontrols2.LoaderNoSleep {
        id: splash_screen
        objectName: "splash_screen"
        anchors.fill: parent
    }
    LPcontrols2.LoaderNoSleep {
        id: info_message
        objectName: "info_message"
        anchors.fill: parent
    }
    LPcontrols2.LoaderNoSleep {
        id: error_dialog
        objectName: "error_dialog"
        anchors.fill: parent
    }
    LPcontrols2.LoaderNoSleep {
        id: book_downloaded_dg
        objectName: "book_downloaded_dg"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        visible: false
        sourceComponent: downloaded_bar
    }

    // A finished download, over the bottom of any view: the book, and whether to open it now.
    Component {
        id: downloaded_bar

        Rectangle {
            height: Math.round(128 * LPcontrols2.Global.dp)
            color: "white"
            border.color: "black"
            border.width: Math.round(3 * LPcontrols2.Global.dp)

            function close() {
                book_downloaded_dg.visible = false
                const shown = DownloadingMessenger.id + DownloadingMessenger.title
                DownloadingMessenger.closeMessage()
                // A message that came while this one showed waits in the queue; it differs from
                // the one just closed.
                DownloadingMessenger.getMessage()
                if (DownloadingMessenger.id + DownloadingMessenger.title !== shown)
                    book_downloaded_dg.visible = true
                else
                    DownloadingMessenger.closeMessage()
            }

            Cover {
                id: bar_cover
                x: BookstoreConstants.defaultBorderMargin
                anchors.verticalCenter: parent.verticalCenter
                height: parent.height - 2 * BookstoreConstants.defaultElementClearanceVer
                width: DownloadingMessenger.book_type === "audio" ? height : Math.round(height / 1.5)
                url: DownloadingMessenger.cover_url
                title: DownloadingMessenger.title
            }
            Column {
                anchors.left: bar_cover.right
                anchors.leftMargin: BookstoreConstants.defaultElementClearanceHor
                anchors.right: bar_buttons.left
                anchors.rightMargin: BookstoreConstants.defaultElementClearanceHor
                anchors.verticalCenter: parent.verticalCenter
                Text {
                    objectName: "downloadedText"
                    width: parent.width
                    text: qsTr("@BookIsDownloaded")
                    wrapMode: Text.Wrap
                    font.pixelSize: Math.round(18 * LPcontrols2.Global.dp)
                    color: "black"
                }
                Text {
                    objectName: "downloadedTitle"
                    width: parent.width
                    text: DownloadingMessenger.title
                    elide: Text.ElideRight
                    font.pixelSize: Math.round(20 * LPcontrols2.Global.dp)
                    font.bold: true
                    color: "black"
                }
            }
            Column {
                id: bar_buttons
                anchors.right: parent.right
                anchors.rightMargin: BookstoreConstants.defaultBorderMargin
                anchors.verticalCenter: parent.verticalCenter
                spacing: BookstoreConstants.defaultImageClearence
                LPcontrols2.RoundedCornerTextButton {
                    objectName: "downloadedOpen"
                    width: Math.round(150 * LPcontrols2.Global.dp)
                    height: Math.round(48 * LPcontrols2.Global.dp)
                    text: qsTr("@Open")
                    font.bold: true
                    onClicked: {
                        const book = DownloadingMessenger.id
                        parent.parent.close()
                        UserData.openBook(book)
                    }
                }
                LPcontrols2.RoundedCornerTextButton {
                    objectName: "downloadedNotNow"
                    width: Math.round(150 * LPcontrols2.Global.dp)
                    height: Math.round(48 * LPcontrols2.Global.dp)
                    text: qsTr("@NotNow")
                    onClicked: parent.parent.close()
                }
            }
        }
    }

    Connections {
        target: StoresModel
        function onStoresChanged(store_url) {
            if (login_view.visible)
                return
            root.hideAll()
            home.visible = true
        }
    }

    Connections {
        target: DownloadingMessenger
        function onMessageAdded() {
            DownloadingMessenger.getMessage()
            book_downloaded_dg.visible = true
            StoreManager.requireHQUpdate()
        }
    }

    Component.onCompleted: {
        RootListModel.setLoadSubmodels(true)
        if (StoreManager.startView !== StartView.List)
            StoreManager.loadHomeModels()
        StoreManager.allowRedraw()
        home.source = "Home.qml"
        // QML cannot name the run modes (their names start in lower case): 1 login, 2 registration.
        if (UserData.runMode === 1 || UserData.runMode === 2)
            openLoginView()
    }
}
