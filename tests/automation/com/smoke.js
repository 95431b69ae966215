// The component in the other script language of the host, which also knows characters outside of the code page.
var checks = 0;
var failures = 0;
function expect(name, value, expected) {
  checks++;
  if (value !== expected) {
    failures++;
    WScript.Echo("FAILED " + name + ": " + value + ", not " + expected);
  }
}
// Error 13, or the result of automation itself where the engine does not translate it.
function isTypeMismatch(call) {
  try {
    call();
  } catch (error) {
    return error.number === (0x800A000D | 0) || error.number === (0x80020005 | 0);
  }
  return false;
}

var page = new ActiveXObject("OXAQryCln.clsQuery");
page.strSessionID = "smoke";
page.lngRequestTimeout = 10;
page.RemoteHosts = Server;
expect("Init", page.Init(false), true);
expect("HelloWorld", page.HelloWorld(), "Hello World!");
expect("a number", page.lngRequestTimeout, 10);
expect("channels", page.TELOGetChannelsInit(), 5);
expect("a channel", page.TELOGetChannelsNext(), "B\u00fcro");
expect("the euro sign", page.EncodeBase64("\u20ac"), "gA==");
expect("a character that the code page does not have", isTypeMismatch(function () { page.Encode("\u3042"); }), true);
expect("the same in a variable", isTypeMismatch(function () { page.strUserName = "a\u0416"; }), true);
expect("the variable is unchanged", page.strUserName, "");
expect("two halves of a character", isTypeMismatch(function () { page.Encode("\ud83d\ude00"); }), true);
WScript.Echo("END " + checks + " checks, " + failures + " failures");
