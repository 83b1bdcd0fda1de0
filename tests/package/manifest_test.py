"""The manifest: what Windows asks of it, and that the package has what it names."""

import struct
import unittest
import zlib

import support
from msix import logo, png
from msix.manifest import publisher_id
from msix.png_reader import Png

FACE = "\U0001f600"  # two units of UTF-16

# An edit of the manifest, and words of the message that it must lead to.
REFUSED = {
    "a second application": ("</Applications>", '<Application Id="B"/></Applications>', "2 <Application> where 1"),
    "a misspelt general capability": ('"internetClient"', '"internetCleint"', 'Name="internetCleint"'),
    "a misspelt restricted capability": ('"runFullTrust"', '"runFulltrust"', 'Name="runFulltrust"'),
    "a capability twice": (
        '<Capability Name="internetClient"/>', '<Capability Name="internetClient"/>' * 2, "two <Capability>"),
    "capabilities in another order": (
        '<Capability Name="internetClient"/>\n        <rescap:Capability Name="runFullTrust"/>',
        '<rescap:Capability Name="runFullTrust"/>\n        <Capability Name="internetClient"/>', "before a general one"),
    "no capabilities": ("Capabilities>", "Ignored>", "no <Capabilities>"),
    "a version of three parts": ('Version="1.0.0.0"', 'Version="1.0.0"', 'Version="1.0.0"'),
    "a version above 65535": ('Version="1.0.0.0"', 'Version="1.0.65536.0"', "1.0.65536.0"),
    "a version with a leading zero": ('Version="1.0.0.0"', 'Version="1.00.0.0"', "1.00.0.0"),
    "a name with a blank": ('Name="Velmo.NotificationClient"', 'Name="Velmo Client"', "Velmo Client"),
    "a name of two characters": ('Name="Velmo.NotificationClient"', 'Name="Ve"', 'Name="Ve"'),
    "a name of 51 characters": ('Name="Velmo.NotificationClient"', f'Name="{"V" * 51}"', "V" * 51),
    "a publisher that is no distinguished name": ('"CN=Velmo"', '"Velmo"', 'Publisher="Velmo"'),
    "a publisher without a blank between its parts": ('"CN=Velmo"', '"CN=Velmo,O=Velmo"', "CN=Velmo,O=Velmo"),
    "no publisher": (' Publisher="CN=Velmo"', "", "no Publisher"),
    "another architecture": ('"x64"', '"arm64"', "arm64"),
    "an unknown attribute": ("<Properties>", '<Properties Mark="1">', "attribute Mark"),
    "an unknown element": ("<Properties>", "<Properties><Frame/>", "Frame"),
    "an element of a newer namespace": (
        "<Properties>", '<Properties><n:Frame xmlns:n="http://schemas.microsoft.com/appx/manifest/uap/windows10/10"/>',
        "uap/windows10/10"),
    "text where none belongs": ("<Properties>", "<Properties>x", "<Properties> has text"),
    "an image that is no image": ("Square44x44Logo.png", "Square44x44Logo.gif", "Square44x44Logo.gif"),
    "a colour that is none": ('"transparent"', '"blueish"', "blueish"),
    "an executable that is none": ('Executable="VelmoNotificationClient.exe"', 'Executable="a.dll"', "a.dll"),
    "a protocol in upper case": ('"velmo-notification"', '"Velmo-notification"', "Velmo-notification"),
    "a protocol of one character": ('"velmo-notification"', '"v"', '"v"'),
    "an app service of one character": ('"com.velmo.notification"', '"c"', '"c"'),
    "an app service with a task of its own": (
        'Category="windows.appService"', 'Category="windows.appService" EntryPoint="A.B"', "attribute EntryPoint"),
    "a misspelt category": ('"windows.protocol"', '"windows.protocl"', "windows.protocl"),
    "a background task declared": ('"windows.protocol"', '"windows.backgroundTasks"', "windows.backgroundTasks"),
    "a parameter group twice": ('GroupId="CURIUpdated"', 'GroupId="LaunchHOV"', 'GroupId="LaunchHOV"'),
    "a parameter group without parameters": (' Parameters="/CURIUpdated"', "", "no Parameters"),
    "a class twice": (
        '"VelmoNotificationClient.MainPage" ThreadingModel="both"/>',
        '"VelmoNotificationClient.MainPage" ThreadingModel="both"/><ActivatableClass '
        'ActivatableClassId="VelmoNotificationClient.MainPage" ThreadingModel="both"/>', "two <ActivatableClass>"),
    "a threading model that is none": ('ThreadingModel="both"', 'ThreadingModel="free"', "free"),
    "an oldest system on which the app does not run": ("10.0.17763.0", "10.0.16299.0", "MinVersion is below"),
    "a newest system below the oldest": ("10.0.22621.0", "10.0.17762.0", "MaxVersionTested is below"),
    "a device of another kind": ('"Windows.Desktop"', '"Windows.Mobile"', "Windows.Mobile"),
    "no description of the visuals": (
        'Description="Push notifications and background tasks for the Velmo suite"', "", "no Description"),
    "another root": ("manifest/foundation/windows10\"", "manifest/foundation/windows8\"", "its root is"),
    "a document type": ("<Package", "<!DOCTYPE Package><Package", "document type"),
    "an element without an end": ("</Package>", "", "not well-formed"),
    "an executable that is not there": ('="VelmoNotificationClient.exe"', '="Other.exe"', "Other.exe: AppxManifest.xml"),
    "a desktop component that is not there": ("HOV\\Tessaline.exe", "HOV\\Other.exe", "HOV\\Other.exe: AppxM"),
    "an image that is not there": ("Assets\\StoreLogo.png", "Assets\\Other.png", "Assets\\Other.png: AppxM"),
    "a server that is not there": (
        "<Path>VelmoNotificationClient.exe", "<Path>Server.dll", "Server.dll: AppxM"),
    "an entry point that is not the executable's": (
        'EntryPoint="VelmoNotificationClient.App"', 'EntryPoint="VelmoNotificationClient.Ap"',
        "application object is VelmoNotificationClient.App"),
    "a class that the executable does not know": ("Client.MainPage", "Client.OtherPage", "Client.OtherPage"),
    "an app service with a mark that is not allowed": (
        '"com.velmo.notification"', '"com.velmo_notification"', 'Name="com.velmo_notification"'),
    "an app service that begins with a full stop": ('"com.velmo.notification"', '".velmo"', 'Name=".velmo"'),
    "a protocol that begins with a digit": ('"velmo-notification"', '"2velmo"', 'Name="2velmo"'),
    "a version in digits of another script": ('Version="1.0.0.0"', 'Version="1.0.0.1\u0663"', 'Version="1.0.0.1'),
    "an oldest system in digits of another script": ('"10.0.17763.0"', '"10.0.1\uff17763.0"', 'MinVersion="10.0.'),
    "a class in letters of another script": (
        'ActivatableClassId="VelmoNotificationClient.MainPage"', 'ActivatableClassId="A\u0391.B"', 'ClassId="'),
    "a publisher of a number without OID": ('"CN=Velmo"', '"CN=Velmo, 2.5.4.15=x"', "2.5.4.15=x"),
    "a publisher of a number with leading zeros": ('"CN=Velmo"', '"OID.2.05.4=x"', "OID.2.05.4=x"),
    "a publisher of one number": ('"CN=Velmo"', '"OID.2=x"', "OID.2=x"),
    "a publisher of two lines": ('"CN=Velmo"', '"CN=Velmo&#10;Software"', "CN=Velmo\\u000aSoftware"),
    "a publisher of two lines in quotes": ('"CN=Velmo"', '"CN=&quot;Velmo&#13;Software&quot;"', "Velmo\\u000dSoftware"),
    "a publisher with blanks around it": ('"CN=Velmo"', '"CN= Velmo"', "CN= Velmo"),
    "a publisher of 8,193 characters": ('"CN=Velmo"', f'"CN={"V" * 8190}"', "CN=VVVV"),
    "a publisher of 4,096 characters of two units": ('"CN=Velmo"', f'"CN={FACE * 4095}"', "CN=" + FACE),
    "a name that is a device's": ('Name="Velmo.NotificationClient"', 'Name="Com1"', 'Name="Com1"'),
    "a name that begins as a device's": ('Name="Velmo.NotificationClient"', 'Name="nul.Velmo"', 'Name="nul.Velmo"'),
    "a name that ends with a full stop": ('Name="Velmo.NotificationClient"', 'Name="Velmo."', 'Name="Velmo."'),
    "a name in another encoding": ('Name="Velmo.NotificationClient"', 'Name="xn--Velmo"', 'Name="xn--Velmo"'),
    "a name with a part in another encoding": ('Name="Velmo.NotificationClient"', 'Name="V.XN--x"', 'Name="V.XN--x"'),
    "an image's extension in upper case": ("Square44x44Logo.png", "Square44x44Logo.PNG", "Square44x44Logo.PNG"),
    "an image's path with a leading blank": ('"Assets\\Square44', '" Assets\\Square44', '=" Assets'),
    "an image's path with a leading backslash": ('"Assets\\Square44', '"\\Assets\\Square44', '="\\Assets'),
    "an image's path of two lines": ('"Assets\\Square44', '"Assets\\&#10;Square44', 'has Square44x44Logo="Assets'),
    "an image's path of 257 units": ("Square44x44Logo.png", FACE * 123 + ".png", "which Windows does not take"),
    "a description with a leading blank": ('Description="Push', 'Description=" Push', 'Description=" Push'),
    "a description with a trailing tab": (' suite"', ' suite&#9;"', "which Windows does not take"),
    "a description of 2,049 units": (
        'Description="Push', f'Description="{FACE * 997}', "<VisualElements> has Description"),
    "a description of two lines": ('Description="Push', 'Description="P&#10;ush', 'Description="P\\u000aush'),
    "a display name of 257 units": (
        '<uap:VisualElements DisplayName="Velmo Notification Client"',
        f'<uap:VisualElements DisplayName="{FACE * 128}V"', "<VisualElements> has DisplayName"),
    "a display name that is blank": (
        "<DisplayName>Velmo Notification Client", "<DisplayName> ", "<DisplayName> has the text"),
    "text among extensions": ("<Extensions>\n        <Extension ", "<Extensions>text<Extension ", "<Extensions> has text"),
    "text behind an extension": ("</Extension>\n    </Extensions>", "</Extension>text</Extensions>", "<Extensions> has text"),
    "an attribute of extensions": (
        "<Extensions>\n        <Extension ", '<Extensions Mark="1"><Extension ', "<Extensions> has an attribute Mark"),
    "white space that is none in XML": ("<Properties>", "<Properties>\u00a0", "<Properties> has text"),
    "white space of another script": ("</Properties>", "\u3000</Properties>", "<Properties> has text"),
    "a class before its server's path": (
        "<InProcessServer>",
        '<InProcessServer><ActivatableClass ActivatableClassId="A.B" ThreadingModel="both"/>', "another order than Path"),
    "a language twice": ('Language="en-US"/>', 'Language="en-US"/><Resource Language="EN-us"/>', "two <Resource> of the"),
    "another encoding than it has": ('encoding="utf-8"', 'encoding="iso-8859-1"', "its encoding is iso-8859-1"),
    "another encoding behind many blanks": (' encoding="utf-8"', " " * 300 + 'encoding="iso-8859-1"', "its encoding is iso-8859-1"),
    "an encoding of two bytes": ('encoding="utf-8"', "encoding='UTF-16'", "its encoding is UTF-16"),
    "an entry point that is another class of the executable": (
        'EntryPoint="VelmoNotificationClient.App"', 'EntryPoint="VelmoNotificationClient.MainPage"',
        "EntryPoint is VelmoNotificationClient.MainPage"),
    "an entry point that is another text of the executable": (
        'EntryPoint="VelmoNotificationClient.App"', 'EntryPoint="LaunchHOV"', "EntryPoint is LaunchHOV"),
    "a class that is another text of the executable": (
        'ActivatableClassId="VelmoNotificationClient.MainPage"', 'ActivatableClassId="VelmoNotificationClient.App"',
        "class VelmoNotificationClient.App, which"),
    "a missing parameter group": (
        '<desktop:ParameterGroup GroupId="CURIUpdated" Parameters="/CURIUpdated"/>', "", "no ParameterGroup CURIUpdated"),
    "a misspelt parameter group": ('GroupId="LaunchHOV"', 'GroupId="LaunchHov"', "no ParameterGroup LaunchHOV"),
    "a parameter group by another name of the executable": (
        'GroupId="NotificationReceived"', 'GroupId="ZEB"', "no ParameterGroup NotificationReceived"),
    "a misspelt app service": ('"com.velmo.notification"', '"com.velmo.notifcation"', "com.velmo.notifcation; V"),
    "an app service in another case": ('"com.velmo.notification"', '"com.velmo.Notification"', "com.velmo.Notification; V"),
    "a server that is another program": (
        "<Path>VelmoNotificationClient.exe", "<Path>HOV\\Tessaline.exe", "neither a library nor the application's own"),
    "a second server of one path": (
        "<Extension Category=\"windows.activatableClass.inProcessServer\">",
        "<Extension Category=\"windows.activatableClass.inProcessServer\"><InProcessServer>"
        "<Path>velmonotificationclient.EXE</Path><ActivatableClass ActivatableClassId=\"A.B\" ThreadingModel=\"both\"/>"
        "</InProcessServer></Extension><Extension Category=\"windows.activatableClass.inProcessServer\">",
        "two servers of the path"),
}  # fmt: skip


class ManifestRules(unittest.TestCase):
    def test_refuses(self):
        for what, (old, new, words) in REFUSED.items():
            with self.subTest(what):
                found = support.problems_of_manifest(old, new)
                self.assertTrue(any(words in text for text in found), found)

    def test_takes_other_values_that_windows_takes(self):
        for old, new in (
            ("CN=Velmo", "CN=Velmo Software, O=&quot;Velmo, Ltd.&quot;, L=Pune, C=IN"),
            ("CN=Velmo", "OID.2.5.4.15=Velmo, PostalCode=411001, CN=&quot;the &quot;&quot;V&quot;&quot;&quot;"),
            ("CN=Velmo", "CN=" + "V" * 8189),
            ("CN=Velmo", "CN=Gr\u00fc\u00dfe \U0001f600"),
            ('Name="Velmo.NotificationClient"', 'Name="Console.Com10"'),
            ('Name="Velmo.NotificationClient"', f'Name="{"V" * 50}"'),
            ("velmo-notification", "v2"),
            ("velmo-notification", "v" * 39),
            ('Parameters="/CURIUpdated"', f'Parameters="{"x" * 32767}"'),
            ("<DisplayName>Velmo Notification Client", "<DisplayName>" + FACE * 102 + "x" * 52),
            ("<DisplayName>Velmo Notification Client", "<DisplayName>\u00a0Velmo\tClient\u00a0"),
            ('encoding="utf-8"', "encoding='UTF-8' standalone='yes'"),
            ('<?xml version="1.0" encoding="utf-8"?>\n', ""),
            ("<Properties>", "\r\n\t <Properties><!-- a comment -->"),
            ("Assets\\StoreLogo.png", "assets\\storelogo.png"),
            ("HOV\\Tessaline.exe", "hov\\tessaline.EXE"),
            ('"transparent"', '"#1F3A5F"'),
            ("<desktop:FullTrustProcess>", '<desktop:FullTrustProcess><desktop:ParameterGroup GroupId="x" Parameters="y"/>'),
            ('Language="en-US"/>', 'Language="en-US"/><Resource Language="de"/>'),
        ):
            with self.subTest(new):
                self.assertEqual(support.problems_of_manifest(old, new), [])

    def without(self, begin, end):
        """What is said of the manifest without the text from one to the other."""
        text = support.manifest_bytes().decode("utf-8")
        start = text.index(begin)
        return support.problems_of_manifest(text[start : text.index(end, start) + len(end)], "")

    def test_an_extension_that_the_executable_needs_is_missed(self):
        for category, begin, end in (
            ("windows.fullTrustProcess", "<desktop:Extension", "</desktop:Extension>"),
            ("windows.appService", '<uap:Extension Category="windows.appService">', "</uap:Extension>"),
        ):
            (found,) = self.without(begin, end)
            self.assertIn(f"it has no {category}", found)

    def test_extensions_that_the_executable_does_not_need_may_be_missing(self):
        for begin, end in (
            ('<uap:Extension Category="windows.protocol">', "</uap:Extension>"),
            ("<Extensions>\n        <Extension ", "</Extension>\n    </Extensions>"),
        ):
            self.assertEqual(self.without(begin, end), [])

    def test_a_second_full_trust_component_is_refused(self):
        text = support.manifest_bytes().decode("utf-8")
        start = text.index("<desktop:Extension")
        end = text.index("</desktop:Extension>") + len("</desktop:Extension>")
        second = text[start:end].replace('GroupId="', 'GroupId="Other')
        end = "</Extensions>\n        </Application>"
        found = support.problems_of_manifest(end, second + end)
        self.assertTrue(any("two windows.fullTrustProcess" in text for text in found), found)

    def test_what_is_not_utf_8_is_refused(self):
        found = support.problems_of({support.MANIFEST: support.manifest_bytes().replace(b"Push", b"P\xfcsh")})
        self.assertTrue(any("not UTF-8" in text for text in found), found)

    def test_the_markup_that_the_executable_loads_must_be_there(self):
        found = support.problems_of({support.MARKUP: None})
        self.assertEqual(len(found), 1)
        self.assertIn("MainPage.xaml: VelmoNotificationClient.exe names this file", found[0])

    def test_the_publisher_id_is_that_of_the_package_family(self):
        self.assertEqual(publisher_id("CN=Velmo"), "m7dy57p66fpam")


def rows(count, size):
    """Pixels of rows of that many bytes, each behind its filter."""
    return bytes(count * (1 + size))


def image(width, height, pixels, stream=None, bits=8, colour=6, interlaced=0, before=b""):
    """A PNG with these pixels, or this in the place of their compressed data."""
    header = struct.pack(">IIBBBBB", width, height, bits, colour, 0, 0, interlaced)
    data = zlib.compress(pixels) if stream is None else stream
    end = png.chunk(b"IDAT", data) + png.chunk(b"IEND", b"")
    return png.SIGNATURE + png.chunk(b"IHDR", header) + before + end


class Images(unittest.TestCase):
    def refused(self, data, words):
        found = support.problems_of({"Assets\\Square44x44Logo.png": data})
        self.assertTrue(any("Square44x44Logo.png:" in text and words in text for text in found), found)

    def test_an_image_of_another_size_is_refused(self):
        self.refused(logo.draw(45), "45 x 45 pixels")

    def test_an_image_that_is_not_square_is_refused(self):
        self.refused(image(44, 43, rows(43, 44 * 4)), "44 x 43 pixels")

    def test_an_image_whose_pixels_are_none_is_refused(self):
        whole = rows(44, 44 * 4)
        for what, (data, words) in {
            "noise": (image(44, 44, b"", b"noise" * 50), "cannot be read"),
            "nothing": (image(44, 44, b"", b""), "cannot be read"),
            "too few": (image(44, 44, whole[:-1]), "not as many"),
            "too many": (image(44, 44, whole + b"x"), "not as many"),
            "a filter that is none": (image(44, 44, b"\5" + whole[1:]), "no pixels"),
            "a compression without an end": (image(44, 44, b"", zlib.compress(whole)[:-4]), "cannot be read"),
            "a bomb": (image(44, 44, bytes(50000000)), "not as many"),
            "a palette without colours": (image(44, 44, rows(44, 44), colour=3), "no palette"),
            "a colour type that is none": (image(44, 44, whole, colour=5), "combination"),
            "bits that are none": (image(44, 44, whole, bits=5), "combination"),
            "an interlacing that is none": (image(44, 44, whole, interlaced=2), "combination"),
            "no size": (image(0, 44, whole), "0 x 44 pixels"),
            "a size beyond all": (image(0xFFFFFFFF, 0xFFFFFFFF, whole), "4294967295 x"),
        }.items():
            with self.subTest(what):
                self.refused(data, words)

    def test_images_of_every_kind_are_accepted(self):
        palette = png.chunk(b"PLTE", bytes(6))
        for what, data in {
            "grey": image(44, 44, rows(44, 44), colour=0),
            "black and white": image(44, 44, rows(44, 6), bits=1, colour=0),
            "colours of 16 bits": image(44, 44, rows(44, 44 * 6), bits=16, colour=2),
            "grey and alpha": image(44, 44, rows(44, 88), colour=4),
            "a palette": image(44, 44, rows(44, 11), bits=2, colour=3, before=palette),
            "interlaced": image(
                44, 44, b"".join(rows(high, wide) for wide, high in (
                    (6, 6), (5, 6), (11, 5), (11, 11), (22, 11), (22, 22), (44, 22))), colour=0, interlaced=1),
        }.items():  # fmt: skip
            with self.subTest(what):
                self.assertEqual(support.problems_of({"Assets\\Square44x44Logo.png": data}), [])

    def test_an_image_that_is_cut_or_damaged_is_refused(self):
        whole = logo.draw(44)
        for size in range(len(whole)):
            with self.subTest(size=size), self.assertRaises(ValueError):
                Png(whole[:size]).check_pixels()
        self.refused(whole[:-20], "damaged")
        self.refused(whole[:60] + bytes([whole[60] ^ 1]) + whole[61:], "damaged")
        self.refused(b"GIF89a", "no PNG")

    def test_an_image_that_is_too_large_is_refused(self):
        whole = logo.draw(44)
        filler = png.chunk(b"tEXt", bytes(205000))
        self.refused(whole[:-12] + filler + whole[-12:], "Windows takes 204800")

    def test_the_logo_is_drawn_in_any_size_with_clear_corners(self):
        for side in (16, 44, 50, 150):
            image = logo.draw(side)
            read = Png(image)
            read.check_pixels()
            self.assertEqual((read.width, read.height), (side, side))
            self.assertEqual(logo._pixel(side, 0, 0)[3], 0)
            self.assertEqual(logo._pixel(side, side // 2, side // 2), (255, 255, 255, 255))


if __name__ == "__main__":
    unittest.main()
