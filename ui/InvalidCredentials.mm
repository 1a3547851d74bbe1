#include "ui/InvalidCredentials.h"

#include "ui/QWIAlertUtils.h"

void ShowInvalidCredentials(NSColor* titleColor) {
    [QWIAlertUtils QWIAlertWithMessageTopMost:@"Invalid credentials"
                                        Title:@"NOTICE!"
                                       OkText:@"Ok"
                                   IsCentered:YES
                                      BigText:@""
                                   TitleColor:titleColor
                                      NibName:@"QWSyleAlert"];
}
