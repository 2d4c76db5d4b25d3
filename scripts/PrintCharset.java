// Prints what the JDK maps in a charset, for mapping_peers.py: lines "read CODE VALUE+VALUE" and
// "write TEXT VALUE+VALUE".
//
//     java PrintCharset.java CHARSET PATTERN... [shifts]
//
// A pattern has the bytes that a code may have at each place: 8E,A1-B0,A1-FE,A1-FE. With shifts,
// codes of two bytes stand between SO and SI.

import java.nio.ByteBuffer;
import java.nio.CharBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.Charset;
import java.nio.charset.CharsetDecoder;
import java.nio.charset.CharsetEncoder;
import java.util.ArrayList;
import java.util.HexFormat;
import java.util.HashSet;
import java.util.List;
import java.util.Set;
import java.util.stream.Collectors;

public class PrintCharset {
  static final HexFormat HEX = HexFormat.of().withUpperCase();
  static CharsetDecoder decoder;
  static CharsetEncoder encoder;
  static boolean shifts;
  static final Set<Integer> singles = new HashSet<>();
  static final Set<String> sequences = new HashSet<>();
  static final StringBuilder out = new StringBuilder();

  static String read(byte[] text) {
    try {
      return decoder.decode(ByteBuffer.wrap(text)).toString();
    } catch (CharacterCodingException e) {
      return null;
    }
  }

  static String values(String text) {
    return text.codePoints().mapToObj(c -> String.format("%04X", c))
        .collect(Collectors.joining("+"));
  }

  static void readCodes(List<int[]> places, byte[] code, int length) {
    if (length < places.size()) {
      if (length == 1 && !shifts && singles.contains(code[0] & 0xFF)) return;
      for (int b = places.get(length)[0]; b <= places.get(length)[1]; b++) {
        code[length] = (byte) b;
        readCodes(places, code, length + 1);
      }
      return;
    }
    if (shifts && length == 1 && (code[0] == 0x0E || code[0] == 0x0F)) return;
    byte[] text = shifts && length == 2 ? new byte[] {0x0E, code[0], code[1], 0x0F} : code.clone();
    String read = read(text);
    if (read == null || read.isEmpty()) return;
    if (length == 1) singles.add(code[0] & 0xFF);
    if (read.codePointCount(0, read.length()) > 1) sequences.add(read);
    out.append("read ").append(HEX.formatHex(code)).append(' ').append(values(read)).append('\n');
  }

  static void write(String value) {
    try {
      ByteBuffer text = encoder.encode(CharBuffer.wrap(value));
      byte[] bytes = new byte[text.remaining()];
      text.get(bytes);
      if (bytes.length == 0) return;
      out.append("write ").append(HEX.formatHex(bytes)).append(' ').append(values(value));
      out.append('\n');
    } catch (CharacterCodingException e) {
      // It has none.
    }
  }

  public static void main(String[] arguments) {
    Charset charset = Charset.forName(arguments[0]);
    decoder = charset.newDecoder();
    encoder = charset.newEncoder();
    int count = arguments.length;
    shifts = arguments[count - 1].equals("shifts");
    for (int i = 1; i < (shifts ? count - 1 : count); i++) {
      List<int[]> places = new ArrayList<>();
      for (String place : arguments[i].split(",")) {
        String[] range = place.split("-");
        int first = Integer.parseInt(range[0], 16);
        places.add(new int[] {first, Integer.parseInt(range[range.length - 1], 16)});
      }
      readCodes(places, new byte[places.size()], 0);
    }
    for (int c = 0; c < 0x110000; c++) {
      if (c < 0xD800 || c > 0xDFFF) write(Character.toString(c));
    }
    sequences.forEach(PrintCharset::write);
    System.out.print(out);
  }
}
