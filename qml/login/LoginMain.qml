import QtQuick 2.15
import com.lumenpress.controls 2.0 as LPcontrols2

// The sign-in flow: each step a loader, one shown at a time. The answers of UserData move it on.
Item {
    id: login_main

    property string email: ""
    property string password: ""
    property string user_name: ""
    property string user_surname: ""
    property bool creating: false

    function loginHideAll() {
        for (const step of [login_view, login_no_touch, enter_email_view, new_user_view, enter_password_view,
                            recover_password_view, set_password_view, welcome_view])
            step.visible = false
    }
    function show(step, file) {
        loginHideAll()
        if (step.source.toString() === "")
            step.source = file
        step.visible = true
        StoreManager.requireHQUpdate()
    }
    function showStart() {
        if (LPcontrols2.DeviceInfoProvider.isTouchDevice)
            show(login_view, "LoginStartView.qml")
        else
            show(login_no_touch, "AccountAuthNoTouch.qml")
    }
    function showEmail() { show(enter_email_view, "EnterEmailView.qml") }
    function finishFlow() {
        if (UserData.exitAfterLogin)
            UserData.closeApp(false)
        else
            root.closeLoginView()
    }
    function busy(step, value) {
        if (step.item)
            step.item.busy = value
    }
    function showWelcome(verify) {
        show(welcome_view, "WelcomeView.qml")
        welcome_view.item.setVerifyAccount(verify)
        welcome_view.item.setEmailText(UserData.getUserEmail())
    }

    Rectangle {
        anchors.fill: parent
        color: "white"
    }

    LPcontrols2.LoaderNoSleep {
        id: login_view
        objectName: "login_start"
        anchors.fill: parent
        visible: false
    }
    Connections {
        target: login_view.item
        ignoreUnknownSignals: true
        function onLoginDevice() { login_main.showEmail() }
        function onSkip() { login_main.finishFlow() }
    }
    LPcontrols2.LoaderNoSleep {
        id: login_no_touch
        objectName: "login_no_touch"
        anchors.fill: parent
        visible: false
    }
    Connections {
        target: login_no_touch.item
        ignoreUnknownSignals: true
        function onLoginDevice() { login_main.showEmail() }
        function onSkip() { login_main.finishFlow() }
    }
    LPcontrols2.LoaderNoSleep {
        id: enter_email_view
        objectName: "enter_email_view"
        anchors.fill: parent
        visible: false
    }
    Connections {
        target: enter_email_view.item
        ignoreUnknownSignals: true
        function onNext(email) {
            login_main.email = email
            login_main.busy(enter_email_view, true)
            UserData.resolveEmail(email)
        }
        function onBack() { login_main.showStart() }
    }
    LPcontrols2.LoaderNoSleep {
        id: enter_password_view
        objectName: "enter_password_view"
        anchors.fill: parent
        visible: false
        onLoaded: item.email = Qt.binding(function() { return login_main.email })
    }
    Connections {
        target: enter_password_view.item
        ignoreUnknownSignals: true
        function onLogin(password) {
            login_main.busy(enter_password_view, true)
            UserData.login(login_main.email, password)
        }
        function onForgot() { login_main.show(recover_password_view, "RecoverPasswordView.qml") }
        function onBack() { login_main.showEmail() }
    }
    LPcontrols2.LoaderNoSleep {
        id: recover_password_view
        objectName: "recover_password_view"
        anchors.fill: parent
        visible: false
        onLoaded: item.email = Qt.binding(function() { return login_main.email })
    }
    Connections {
        target: recover_password_view.item
        ignoreUnknownSignals: true
        function onRecover(email) {
            login_main.busy(recover_password_view, true)
            UserData.recoverPassword(email)
        }
        function onBack() { login_main.show(enter_password_view, "EnterPasswordView.qml") }
    }
    LPcontrols2.LoaderNoSleep {
        id: new_user_view
        objectName: "new_user_view"
        anchors.fill: parent
        visible: false
        onLoaded: item.email = Qt.binding(function() { return login_main.email })
    }
    Connections {
        target: new_user_view.item
        ignoreUnknownSignals: true
        function onNext(user_name, user_surname, want_newsletter) {
            login_main.user_name = user_name
            login_main.user_surname = user_surname
            UserData.setWantNewsLetter(want_newsletter)
            login_main.show(set_password_view, "SetPasswordView.qml")
        }
        function onBack() { login_main.showEmail() }
    }
    LPcontrols2.LoaderNoSleep {
        id: set_password_view
        objectName: "set_password_view"
        anchors.fill: parent
        visible: false
    }
    Connections {
        target: set_password_view.item
        ignoreUnknownSignals: true
        function onCreate(password) {
            login_main.password = password
            login_main.busy(set_password_view, true)
            UserData.createAccount(login_main.email, login_main.user_name, login_main.user_surname, password)
        }
        function onBack() { login_main.show(new_user_view, "NewUserView.qml") }
    }
    LPcontrols2.LoaderNoSleep {
        id: welcome_view
        objectName: "welcome_view"
        anchors.fill: parent
        visible: false
    }
    Connections {
        target: welcome_view.item
        ignoreUnknownSignals: true
        function onFinish() { login_main.finishFlow() }
    }

    // What the session answers, while this flow waits for it.
    Connections {
        target: UserData
        function onEmailResolved(success2, err) {
            if (!enter_email_view.visible)
                return
            login_main.busy(enter_email_view, false)
            if (err === 6)
                LPcontrols2.Global.openInfoMessage(qsTr("@BadEmail"))
            else if (err === 5)
                LPcontrols2.Global.openInfoMessage(qsTr("@NetworkError"))
            else if (err !== 0)
                LPcontrols2.Global.openInfoMessage(qsTr("@NET_FAIL"))
            else if (success2)
                login_main.show(enter_password_view, "EnterPasswordView.qml")
            else
                login_main.show(new_user_view, "NewUserView.qml")
        }
        function onLoginFinished(success) {
            if (!enter_password_view.visible && !set_password_view.visible)
                return
            login_main.busy(enter_password_view, false)
            login_main.busy(set_password_view, false)
            if (success)
                login_main.showWelcome(login_main.creating)
        }
        function onLoginFinishError(error_id) {
            if (login_main.creating)
                LPcontrols2.Global.openInfoMessage(qsTr("@NET_FAIL"))
            else if (error_id === 2)
                LPcontrols2.Global.openInfoMessage(qsTr("@YourAccountIsTemporarilyLocked"))
            else if (error_id === 1)
                LPcontrols2.Global.openInfoMessage(qsTr("@PasswordNotMatch"))
            else
                LPcontrols2.Global.openInfoMessage(qsTr("@NET_FAIL"))
        }
        function onRecoverFinished(success) {
            if (!recover_password_view.visible)
                return
            login_main.busy(recover_password_view, false)
            LPcontrols2.Global.openInfoMessage(qsTr("@SentYouPassRecoveryInstr"))
            login_main.show(enter_password_view, "EnterPasswordView.qml")
        }
        // A new account is signed in at once with the password just set.
        function onCreateAccountFinished(success1) {
            if (!set_password_view.visible)
                return
            if (!success1) {
                login_main.busy(set_password_view, false)
                LPcontrols2.Global.openInfoMessage(qsTr("@AccountNotCreated"))
                return
            }
            login_main.creating = true
            UserData.login(login_main.email, login_main.password)
            login_main.password = ""
        }
    }

    Component.onCompleted: showStart()
}
